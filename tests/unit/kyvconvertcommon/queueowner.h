// SPDX-License-Identifier: MIT
#pragma once

#include "KYVConvertCommon/kyvconvertstate.h"
#include "kyvconvertcommon/conversionqueue.h"
#include "scriptedconverter.h"

#include <memory>

#include <QCoreApplication>
#include <QStringList>

/// A queue over a scripted converter, whose states are written down as "uid state".
class QueueOwner
{
public:
    explicit QueueOwner(const QByteArray& script, int atOnce = 1)
        : converter(script)
    {
        settings.converter = converter.program();
        settings.dataFolder = converter.data();
        settings.atOnce = atOnce;
        make();
    }

    void make()
    {
        queue = std::make_unique<KYVConvertCommon::ConversionQueue>(settings);
        QObject::connect(queue.get(), &KYVConvertCommon::ConversionQueue::stateChanged,
                         [this](const QString& uid, const QString&, int state) {
                             states.append(QStringLiteral("%1 %2").arg(uid).arg(state));
                         });
    }

    void add(const QString& uid) const { queue->add({uid, uid + ".fbx", {}}); }

    [[nodiscard]] bool isTold(const QString& state) const
    {
        return QTest::qWaitFor([&] { return states.contains(state); }, 30000);
    }

    ScriptedConverter converter;
    KYVConvertCommon::ConversionSettings settings;
    std::unique_ptr<KYVConvertCommon::ConversionQueue> queue;
    QStringList states;
};
