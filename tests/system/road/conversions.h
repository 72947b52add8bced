// SPDX-License-Identifier: MIT
#pragma once

#include "road/homescreen.h"

namespace road
{

// What a row of the dialog says of a model.
inline constexpr int converted = 0;
inline constexpr int waitsForUnpacking = 1;
inline constexpr int unpacked = 2; ///< at the moment
inline constexpr int waitsForUpload = 3;
inline constexpr int uploaded = 4; ///< at the moment
inline constexpr int waitsForConversion = 5;
inline constexpr int inConversion = 6;
inline constexpr int uploadFailed = 8;
inline constexpr int conversionFailed = 9;
inline constexpr int noRow = -1;

/// Changes the host's settings to the variant in which models may be sent to the server for conversion.
[[nodiscard]] bool AllowConversions();

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

    /// Chooses an archive, to take the place of a finished model.
    [[nodiscard]] bool sendInPlaceOf(const QString& archive, const QString& name);

    /// Presses the button of the row of that name that gives the model up.
    [[nodiscard]] bool giveUp(const QString& name);
    [[nodiscard]] static bool mayGiveUp(const QString& name);

    /// Shows the list of failures and comes back; the names that stood there.
    [[nodiscard]] QStringList lookAtFailures();

    /// What the row of that name says; noRow when there is none.
    [[nodiscard]] static int stateOf(const QString& name);
    /// The names of the rows.
    [[nodiscard]] static QStringList names();

private:
    /// Up to the question what is to become of the archive.
    [[nodiscard]] bool choose(const QString& archive);

    Desktop& m_desktop;
    HomeScreen& m_home;
};

/// The files of all models in the data folder of this program.
[[nodiscard]] QStringList ModelsHere();

/// Makes an archive of a model by the program beside this one. False when it could not be made.
[[nodiscard]] bool PackModel(const QString& model, const QString& archive);

/// Makes an archive so large that every step on its way takes a while. False when it could not be made.
[[nodiscard]] bool MakeLargeArchive(const QString& archive);

/// Makes an archive that holds a file of a model, as far as its name tells, and of which no model can be
/// made. False when it could not be made.
[[nodiscard]] bool MakeHollowArchive(const QString& archive);

} // namespace road
