// SPDX-License-Identifier: MIT
#pragma once

#include "road/homescreen.h"

namespace road
{

/// What a row of the dialog says of a model that the server has converted.
inline constexpr int converted = 0;

/// What a person does in the dialog with the models that the server converts, and sees there. GUI thread.
class Conversions
{
public:
    Conversions(Desktop& desktop, HomeScreen& home)
        : m_desktop(desktop)
        , m_home(home)
    {
    }

    /// Opens it by the button of a project's card.
    [[nodiscard]] bool openFor(const QString& guid);
    [[nodiscard]] bool close();

    /// Chooses an archive, to become a new model.
    [[nodiscard]] bool send(const QString& archive);

    /// What the row of that name says; -1 when there is none.
    [[nodiscard]] static int stateOf(const QString& name);

private:
    Desktop& m_desktop;
    HomeScreen& m_home;
};

/// The files of all models in the data folder of this program.
[[nodiscard]] QStringList ModelsHere();

/// Makes an archive of a model by the program beside this one. False when it could not be made.
[[nodiscard]] bool PackModel(const QString& model, const QString& archive);

} // namespace road
