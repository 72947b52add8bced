// SPDX-License-Identifier: MIT
#pragma once

#include "road/browser.h"
#include "road/colleague.h"
#include "road/conversions.h"
#include "road/infocard.h"
#include "road/session.h"
#include "road/submodels.h"

#include <memory>

#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

/// Walks the road from login to an opened project and back, as a person would, and looks whether each step
/// happens. After each step: a picture of the screen, and one line of JSON with the step's name and
/// milliseconds.
class Check
{
public:
    /// Pictures go to the folder `shots`. The process `server` is the project server that the host of this
    /// folder talks to.
    Check(const QString& shots, pid_t server);

    /// True when every step was seen to happen; ends with the first that was not.
    [[nodiscard]] bool run();

private:
    using Step = bool (Check::*)();

    [[nodiscard]] bool take(const char* name, Step step);
    void keepPicture(const QString& name);

    [[nodiscard]] bool showLogin();
    [[nodiscard]] bool logIn();
    [[nodiscard]] bool openTree();
    [[nodiscard]] bool beginDownload();
    [[nodiscard]] bool finishDownload();
    [[nodiscard]] bool fillHome();
    [[nodiscard]] bool openProject();
    [[nodiscard]] bool turnModel();
    [[nodiscard]] bool goHome();
    [[nodiscard]] bool closeProject();
    [[nodiscard]] bool askForNewProject();
    [[nodiscard]] bool chooseProvince();
    [[nodiscard]] bool createProject();
    [[nodiscard]] bool openCard();
    [[nodiscard]] bool editOnCard();
    [[nodiscard]] bool uploadNewProject();
    [[nodiscard]] bool editInTab();
    [[nodiscard]] bool uploadEdit();
    [[nodiscard]] bool updateColleague();
    [[nodiscard]] bool updateFromColleague();
    [[nodiscard]] bool makeConflict();
    [[nodiscard]] bool forceUpload();
    [[nodiscard]] bool removeNewProject();
    [[nodiscard]] bool sendArchive();
    [[nodiscard]] bool awaitConversion();
    [[nodiscard]] bool openWithNewModel();
    [[nodiscard]] bool lookOnTheWeb();
    [[nodiscard]] bool openCardOfHouse();
    [[nodiscard]] bool addModels();
    [[nodiscard]] bool matchFloor();
    [[nodiscard]] bool saveFloors();
    [[nodiscard]] bool restart();
    [[nodiscard]] bool deleteHouse();
    [[nodiscard]] bool openCardFromServer();
    /// Opens the house, writes a note, saves and closes the tab.
    [[nodiscard]] bool editHouse(const QString& note);
    [[nodiscard]] const road::Colleague& colleague();

    QString m_shots;
    pid_t m_server;
    int m_number = 0;
    road::Session m_session;
    road::InfoCard m_card;
    road::Conversions m_conversions;
    road::SubModels m_subModels;
    road::FloorDialog m_floors;
    QString m_floorOfModel; ///< that was matched
    road::Browser m_browser;
    QTemporaryDir m_folder;
    int m_models = 0; ///< that were here before one more was sent
    std::unique_ptr<road::Colleague> m_colleague;
    QString m_created; ///< guid of the project that was made
};
