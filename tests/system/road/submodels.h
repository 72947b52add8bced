// SPDX-License-Identifier: MIT
#pragma once

#include "road/homescreen.h"

namespace road
{

// What a row of the list says of a model; the numbers are those of the list's own.
inline constexpr int modelIsThere = 2;
inline constexpr int modelFailed = 3;
inline constexpr int noModel = -1;

/// What a person does with the list of a building's models on its card, and sees there. The card has to
/// stand. GUI thread.
class SubModels
{
public:
    SubModels(Desktop& desktop, HomeScreen& home)
        : m_desktop(desktop)
        , m_home(home)
    {
    }

    /// Chooses a file, whose conversion begins.
    [[nodiscard]] bool addFbx(const QString& file) { return choose(QStringLiteral("bimFbxBtn"), file); }
    [[nodiscard]] bool addDrawing(const QString& file) { return choose(QStringLiteral("bimDwgBtn"), file); }
    [[nodiscard]] bool addArchive(const QString& file) { return choose(QStringLiteral("bimAddBtn"), file); }
    /// Chooses an archive that takes the place of the model of that name.
    [[nodiscard]] bool replace(const QString& name, const QString& file);
    [[nodiscard]] bool remove(const QString& name);

    [[nodiscard]] static int stateOf(const QString& name);
    /// Waits until a conversion has ended well.
    [[nodiscard]] static bool awaitModel(const QString& name);
    /// The names of the models, from the top.
    [[nodiscard]] static QStringList names();

    [[nodiscard]] bool openFloors();

private:
    [[nodiscard]] bool choose(const QString& button, const QString& file);
    [[nodiscard]] bool clickOn(const QString& name);

    Desktop& m_desktop;
    HomeScreen& m_home;
};

/// What a person does in the dialog that matches the floors of a building's models to its own, and sees
/// there. GUI thread.
class FloorDialog
{
public:
    FloorDialog(Desktop& desktop, HomeScreen& home)
        : m_desktop(desktop)
        , m_home(home)
    {
    }

    /// Adds a floor of the building's own.
    [[nodiscard]] bool add(const QString& floor);
    /// Makes a floor of the building current.
    [[nodiscard]] bool choose(const QString& floor);
    /// Matches a floor of the chosen model to the current one, or takes it from the floor that has it.
    [[nodiscard]] bool toggle(const QString& floorOfModel);
    [[nodiscard]] bool accept();
    [[nodiscard]] bool cancel();

    /// The floors of the building, those that are matched to the current one, and those of the chosen model.
    [[nodiscard]] static QStringList floors()
    {
        return textsIn(QStringLiteral("floorAll"), QStringLiteral("floor_"));
    }
    [[nodiscard]] static QStringList matched()
    {
        return textsIn(QStringLiteral("floorMatched"), QStringLiteral("item_"));
    }
    [[nodiscard]] static QStringList ofModel()
    {
        return textsIn(QStringLiteral("floorUnMatched"), QStringLiteral("item_"));
    }

private:
    [[nodiscard]] static QStringList textsIn(const QString& column, const QString& prefix);
    [[nodiscard]] static QQuickItem* rowOf(const QString& column, const QString& prefix, const QString& text);
    [[nodiscard]] bool leaveBy(const QString& button);

    Desktop& m_desktop;
    HomeScreen& m_home;
};

/// A file of each kind that can be added, made or copied into `folder`. Empty when that failed.
[[nodiscard]] QString MakeDrawing(const QString& folder);
[[nodiscard]] QString CopyFbx(const QString& folder);

} // namespace road
