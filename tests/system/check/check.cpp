// SPDX-License-Identifier: MIT
#include "check/check.h"

#include "road/picture.h"
#include "road/processes.h"
#include "road/samplecontent.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>

using road::HomeScreen;
using road::Session;
using road::WaitFor;

namespace
{

QString DataFolder()
{
    return QCoreApplication::applicationDirPath() + "/data";
}

} // namespace

Check::Check(const QString& shots, pid_t server)
    : m_shots(shots)
    , m_server(server)
    , m_card(m_session.desktop(), m_session.home())
    , m_conversions(m_session.desktop(), m_session.home())
    , m_subModels(m_session.desktop(), m_session.home())
    , m_floors(m_session.desktop(), m_session.home())
{
}

bool Check::run()
{
    return take("login window", &Check::showLogin) && take("home window", &Check::logIn) &&
           take("tree", &Check::openTree) && take("downloading", &Check::beginDownload) &&
           take("downloaded", &Check::finishDownload) && take("cards", &Check::fillHome) &&
           take("opened", &Check::openProject) && take("turned", &Check::turnModel) &&
           take("home again", &Check::goHome) && take("closed", &Check::closeProject) &&
           take("new project", &Check::askForNewProject) && take("regions", &Check::chooseProvince) &&
           take("created", &Check::createProject) && take("card", &Check::openCard) &&
           take("card saved", &Check::editOnCard) && take("first upload", &Check::uploadNewProject) &&
           take("edited", &Check::editInTab) && take("uploaded", &Check::uploadEdit) &&
           take("colleague updated", &Check::updateColleague) &&
           take("updated", &Check::updateFromColleague) && take("conflict", &Check::makeConflict) &&
           take("forced", &Check::forceUpload) && take("removed", &Check::removeNewProject) &&
           take("archive sent", &Check::sendArchive) && take("converted", &Check::awaitConversion) &&
           take("model arrived", &Check::openWithNewModel) && take("closed again", &Check::closeProject) &&
           take("web page", &Check::lookOnTheWeb) && take("card of a building", &Check::openCardOfHouse) &&
           take("models added", &Check::addModels) && take("floors", &Check::matchFloor) &&
           take("floors saved", &Check::saveFloors) && take("floors after a restart", &Check::restart) &&
           take("deleted", &Check::deleteHouse) && take("card from the server", &Check::openCardFromServer);
}

bool Check::take(const char* name, Step step)
{
    QElapsedTimer timer;
    timer.start();
    const bool happened = (this->*step)();
    const auto milliseconds = timer.elapsed();
    // What has happened is not painted yet.
    m_session.desktop().awaitQuiet();
    const QString picture = QStringLiteral("%1-%2.png").arg(++m_number).arg(QString(name).replace(' ', '-'));
    keepPicture(picture);
    std::printf(R"({"step": "%s", "happened": %s, "milliseconds": %lld, "picture": "%s"})"
                "\n",
                name, happened ? "true" : "false", static_cast<long long>(milliseconds), qPrintable(picture));
    std::fflush(stdout);
    return happened;
}

void Check::keepPicture(const QString& name)
{
    const QString path = QDir(m_shots).filePath(name);
    if (!m_session.desktop().picture().save(path))
        std::fprintf(stderr, "the picture %s cannot be written\n", qUtf8Printable(path));
}

bool Check::showLogin()
{
    return m_session.showLogin();
}

bool Check::logIn()
{
    return m_session.logIn();
}

bool Check::openTree()
{
    return m_session.home().openWholeTree() && HomeScreen::projectsInTree().contains(road::house);
}

bool Check::beginDownload()
{
    // A line as slow as this shows the card at work for as long as a picture takes.
    kill(m_server, SIGSTOP);
    const bool happened = m_session.beginDownload(road::house);
    QTest::qWait(400);
    return happened;
}

bool Check::finishDownload()
{
    kill(m_server, SIGCONT);
    return m_session.finishDownload(road::house);
}

bool Check::fillHome()
{
    return m_session.download(road::engine) && m_session.download(road::layeredHouse) &&
           m_session.download(road::scene);
}

bool Check::openProject()
{
    return m_session.open(road::house);
}

bool Check::turnModel()
{
    const QRect view = Session::view();
    const QImage before = m_session.desktop().picture();
    m_session.desktop().drag(view.center(), view.center() + QPoint(view.width() / 3, view.height() / 8));
    return WaitFor([&] { return road::DifferenceIn(before, m_session.desktop().picture(), view) > 0.02; });
}

bool Check::goHome()
{
    const QImage before = m_session.desktop().picture();
    return m_session.goHome() && WaitFor([] { return HomeScreen::card(road::house) != nullptr; }) &&
           WaitFor([&] {
               return road::DifferenceIn(before, m_session.desktop().picture(), Session::view()) > 0.02;
           });
}

bool Check::closeProject()
{
    return m_session.turnTo(road::house) && m_session.closeCurrentTab() && HomeScreen::tabs().isEmpty() &&
           WaitFor([this] { return m_session.isNoChildSeen() && road::Children().isEmpty(); });
}

const road::Colleague& Check::colleague()
{
    if (!m_colleague)
        m_colleague = std::make_unique<road::Colleague>(road::Session::serverAddress());
    return *m_colleague;
}

bool Check::askForNewProject()
{
    return m_session.home().click(QStringLiteral("createBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("newProjectBtn")); });
}

bool Check::chooseProvince()
{
    // A province that has cities, and the first of these.
    QString province;
    QString city;
    if (!m_session.home().click(QStringLiteral("nameField")))
        return false;
    m_session.desktop().type(QStringLiteral("Riverside"));
    if (!road::ChooseRegion(m_session.desktop(), QStringLiteral("provinceBox"), 2, province) ||
        !road::ChooseRegion(m_session.desktop(), QStringLiteral("cityBox"), 0, city))
        return false;
    return m_session.home().click(QStringLiteral("regionBox")) &&
           WaitFor([] { return HomeScreen::namesBehind(QStringLiteral("region_")).size() > 2; });
}

bool Check::createProject()
{
    const QStringList before = HomeScreen::cards();
    const auto regions = HomeScreen::namesBehind(QStringLiteral("region_"));
    if (regions.isEmpty() || !m_session.home().click("region_" + regions.first()))
        return false;
    const auto isMade = [&] {
        const auto cards = HomeScreen::cards();
        const auto made = std::find_if(cards.begin(), cards.end(),
                                       [&](const QString& guid) { return !before.contains(guid); });
        m_created = made != cards.end() ? *made : QString();
        return !m_created.isEmpty();
    };
    return m_session.home().click(QStringLiteral("newProjectBtn")) && WaitFor(isMade) &&
           HomeScreen::stateOf(m_created) == road::onlyHere;
}

bool Check::openCard()
{
    return m_card.openFor(m_created) && road::InfoCard::valueOf(road::nameRow) == QLatin1String("Riverside");
}

bool Check::editOnCard()
{
    const road::Colleague here(road::Session::serverAddress(), DataFolder());
    return m_card.retype(road::nameRow, QStringLiteral("Riverside East")) && m_card.accept() &&
           here.factsOf(m_created).value(QLatin1String("name")) == QLatin1String("Riverside East");
}

bool Check::uploadNewProject()
{
    return m_session.upload(m_created) && colleague().download(m_created);
}

bool Check::editHouse(const QString& note)
{
    return m_session.open(road::house) && m_session.writeNote(note) && m_session.closeCurrentTab();
}

bool Check::editInTab()
{
    return colleague().download(road::house) && editHouse(QStringLiteral("first")) &&
           WaitFor([] { return HomeScreen::stateOf(road::house) == road::changedHere; });
}

bool Check::uploadEdit()
{
    return m_session.upload(road::house) && colleague().stateOf(road::house) == road::changedThere;
}

bool Check::updateColleague()
{
    return colleague().update(road::house) && colleague().noteOf(road::house).contains("first") &&
           colleague().stateOf(road::house) == road::upToDate;
}

bool Check::updateFromColleague()
{
    const road::Colleague here(road::Session::serverAddress(), DataFolder());
    return colleague().edit(road::house, QStringLiteral("of-the-colleague")) &&
           colleague().upload(road::house) && m_session.update(road::house) &&
           here.noteOf(road::house) == QLatin1String("of-the-colleague");
}

bool Check::makeConflict()
{
    return colleague().edit(road::house, QStringLiteral("of-the-colleague-again")) &&
           colleague().upload(road::house) && editHouse(QStringLiteral("mine")) &&
           WaitFor([] { return HomeScreen::stateOf(road::house) == road::changedOnBoth; });
}

bool Check::forceUpload()
{
    return m_session.upload(road::house) && colleague().update(road::house) &&
           colleague().noteOf(road::house).contains("mine");
}

bool Check::removeNewProject()
{
    return m_session.removeFromList(m_created) && HomeScreen::projectsInTree().contains(m_created);
}

bool Check::sendArchive()
{
    const auto models = road::ModelsHere();
    const QString archive = m_folder.filePath(QStringLiteral("annex.kyv"));
    m_models = models.size();
    return !models.isEmpty() && road::PackModel(models.first(), archive) &&
           m_conversions.openFor(road::house) && m_conversions.send(archive) &&
           WaitFor([] { return road::Conversions::stateOf(QStringLiteral("annex")) >= road::converted; });
}

bool Check::awaitConversion()
{
    constexpr int longest = 120000;
    return WaitFor([] { return road::Conversions::stateOf(QStringLiteral("annex")) == road::converted; },
                   longest);
}

bool Check::openWithNewModel()
{
    return m_conversions.close() &&
           WaitFor([] { return HomeScreen::stateOf(road::house) == road::changedThere; }) &&
           m_session.update(road::house) && road::ModelsHere().size() == m_models + 1 &&
           m_session.open(road::house);
}

bool Check::lookOnTheWeb()
{
    if (!m_session.home().clickOnCard(road::house, QStringLiteral("serviceBtn")) ||
        !WaitFor([this] { return !m_browser.page().isEmpty(); }))
        return false;
    const auto look = m_browser.look();
    if (!look.page.save(QDir(m_shots).filePath(QStringLiteral("web-page.png"))))
        return false;
    // Nothing but the ground where there is no model.
    QImage ground(look.models.size(), look.models.format());
    ground.fill(look.models.pixelColor(0, 0));
    return road::DifferenceIn(ground, look.models, look.models.rect()) > 0.05;
}

bool Check::openCardOfHouse()
{
    return m_card.openFor(road::house);
}

bool Check::addModels()
{
    const QString fbx = road::CopyFbx(m_folder.path());
    const QString drawing = road::MakeDrawing(m_folder.path());
    const QString archive = m_folder.filePath(QStringLiteral("garage.kyv"));
    // Of a model with surfaces: once the drawing is here too, that may be found first.
    return road::PackModel(road::ModelsHere().first(), archive) && !fbx.isEmpty() &&
           m_subModels.addFbx(fbx) && !drawing.isEmpty() && m_subModels.addDrawing(drawing) &&
           m_subModels.addArchive(archive) && road::SubModels::awaitModel(QStringLiteral("spider")) &&
           road::SubModels::awaitModel(QStringLiteral("plan")) &&
           road::SubModels::awaitModel(QStringLiteral("garage"));
}

bool Check::matchFloor()
{
    if (!m_subModels.openFloors() || !WaitFor([] { return !road::FloorDialog::ofModel().isEmpty(); }))
        return false;
    m_floorOfModel = road::FloorDialog::ofModel().first();
    // It is matched to a floor of its own name: a first double click takes it from there.
    return m_floors.add(QStringLiteral("Basement")) && m_floors.choose(QStringLiteral("Basement")) &&
           m_floors.toggle(m_floorOfModel) && m_floors.toggle(m_floorOfModel) &&
           WaitFor([] { return road::FloorDialog::matched().size() == 1; });
}

bool Check::saveFloors()
{
    return m_floors.accept() && m_card.accept() &&
           WaitFor([] { return HomeScreen::stateOf(road::house) == road::changedHere; });
}

bool Check::restart()
{
    m_session.leave();
    // The login has been saved.
    m_session.startHost();
    return WaitFor([] { return HomeScreen::card(road::house) != nullptr; }) && m_card.openFor(road::house) &&
           m_subModels.openFloors() && m_floors.choose(QStringLiteral("Basement")) && WaitFor([this] {
               const auto matched = road::FloorDialog::matched();
               return matched.size() == 1 && matched.first().startsWith(m_floorOfModel);
           });
}

bool Check::deleteHouse()
{
    const QString folder = DataFolder() + "/proj_" + road::house;
    return m_floors.cancel() && QFileInfo::exists(folder) && m_card.deleteLocalData() &&
           WaitFor([] { return HomeScreen::card(road::house) == nullptr; }) &&
           WaitFor([&] { return !QFileInfo::exists(folder); });
}

bool Check::openCardFromServer()
{
    // The program has started anew with a closed tree.
    return m_session.home().openWholeTree() && m_card.openFromTree(road::house) &&
           !road::InfoCard::valueOf(road::nameRow).isEmpty() &&
           !HomeScreen::item(QStringLiteral("deleteBtn"))->isEnabled();
}
