// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/converterwords.h"

#include <chrono>

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

namespace KYVConvertCommon
{

/// What is to be converted, and how.
struct Conversion {
    QString uid;
    QString file;
    QStringList options; ///< of the converter
};

/// The surroundings of all conversions.
struct ConversionSettings {
    QString converter;     ///< the program
    QString dataFolder;    ///< where finished models go
    int atOnce = 1;        ///< conversions that run at the same time
    quint64 mebibytes = 0; ///< that one conversion may occupy; 0 for no limit
    std::chrono::milliseconds longest = std::chrono::hours(1);    ///< that one may take
    std::chrono::milliseconds patience = std::chrono::seconds(2); ///< with a converter that is to end
};

/// A child process that ends with the one that started it.
class BoundProcess : public QProcess
{
public:
    using QProcess::QProcess;

protected:
    void setupChildProcess() override;
};

/// One conversion from its start to its end, in a work folder of its own that goes with this object. GUI
/// thread.
class ConversionRun : public QObject
{
    Q_OBJECT

public:
    ConversionRun(Conversion conversion, const ConversionSettings& settings, QObject* parent);
    ~ConversionRun() override;

    [[nodiscard]] const Conversion& conversion() const { return m_conversion; }
    /// The conversion is not wanted any more.
    [[nodiscard]] bool isStopped() const { return m_isStopped; }

    /// Starts the converter. `ended` follows, whatever happens.
    void start();

    /// Ends the converter and all that it has started, if there is one. `ended` follows.
    void stop();

    /// Returns when the converter is gone, having killed one that does not end within the patience.
    void waitUntilGone();

    /// Moves the converted model to where it is taken in from. Gives why there is none, or the empty text. To
    /// be called once, after `ended`.
    [[nodiscard]] QString deliver();

    /// Where the runs on a data folder have their work folders.
    [[nodiscard]] static QString workFolder(const QString& dataFolder);

signals:
    void ended();

private:
    void beginToWait();
    void finish();
    [[nodiscard]] QString failure() const;

    const Conversion m_conversion;
    const ConversionSettings m_settings;
    const QString m_folder; ///< the work folder
    BoundProcess m_process;
    kyvconvert::ConverterWords m_words;
    QTimer m_limit; ///< first the time that the conversion may take, then the patience with its end
    bool m_isStopped = false;
    bool m_isLate = false;
    bool m_isEnded = false;
};

} // namespace KYVConvertCommon
