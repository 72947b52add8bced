// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostwebservice.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWebChannel>

namespace webview
{

/// Stands where the plugin's template object stands, and takes what test pages have to say.
class Card : public QObject, public TorvoSDK::IWebObserver
{
    Q_OBJECT

public:
    void OnWebChannel(QWebChannel* channel) override
    {
        ++channels;
        channel->registerObject(QStringLiteral("propObject"), this);
    }

    QString text;
    int channels = 0;
    int reads = 0;
    int writes = 0;
    QStringList reports;

public slots:
    QString getProp()
    {
        ++reads;
        return text;
    }
    void setProp(const QString& prop)
    {
        ++writes;
        text = prop;
    }
    void report(const QString& words) { reports.append(words); }
};

} // namespace webview
