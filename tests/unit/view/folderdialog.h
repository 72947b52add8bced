// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

/// Answers the next dialog for the folder of an export, by this folder or, with an empty one, by cancel.
inline void AnswerFolderDialog(const QString& folder, bool& wasAsked)
{
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, folder, &wasAsked] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr)
            return;
        timer->deleteLater();
        wasAsked =
            dialog->windowTitle() == "选择导出的文件夹" && dialog->testOption(QFileDialog::ShowDirsOnly);
        if (folder.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->findChild<QLineEdit*>()->setText(folder);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    timer->start(20);
}
