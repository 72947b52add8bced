// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvertcommon/conversionrun.h"

#include <deque>
#include <memory>
#include <vector>

#include <QObject>
#include <QString>

namespace KYVConvertCommon
{

/// Conversions in the order in which they came, some of them at once. GUI thread.
///
/// Work folders that a killed process has left go when a queue on their data folder is made: one program at a
/// time has a data folder.
class ConversionQueue : public QObject
{
    Q_OBJECT

public:
    explicit ConversionQueue(ConversionSettings settings, QObject* parent = nullptr);
    /// Cancels all, and waits for the converters to be gone.
    ~ConversionQueue() override;

    /// Queues a conversion and returns at once.
    void add(const Conversion& conversion);

    /// Drops what waits and ends what runs, without a word about either.
    void cancelAll();

signals:
    /// A conversion has entered `state`, a number of CKYVConvertState::ConvertState.
    void stateChanged(const QString& uid, const QString& file, int state);

private:
    struct Waiting {
        Conversion conversion;
        bool isTold = false;
    };

    void advance();
    void tellWaiting();
    void startNext();
    void onEnded(ConversionRun* run);
    void removeWorkFolder() const;

    const ConversionSettings m_settings;
    std::deque<Waiting> m_waiting;
    std::vector<ConversionRun*> m_running; ///< owned, as children; stopped ones until they are gone
};

} // namespace KYVConvertCommon
