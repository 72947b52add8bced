// SPDX-License-Identifier: MIT
#pragma once

#include "convert/kyvuploadmgr.h"
#include "uploadsuite.h"

/// Everything that the queue tells, in one list, in order.
class Told
{
public:
    explicit Told(TorvoEditor::CKyvUploadMgr& queue)
    {
        const auto say = [this](const QString& what, const QString& id) { lines.append(what + ' ' + id); };
        QObject::connect(&queue, &TorvoEditor::CKyvUploadMgr::sigRepackageStartNty, &m_here,
                         [=](const QString& id) { say("unpacking", id); });
        QObject::connect(
            &queue, &TorvoEditor::CKyvUploadMgr::sigRepackageFinishedNty, &m_here,
            [=](const QString& id, bool isDone) { say(isDone ? "unpacked" : "not unpacked", id); });
        QObject::connect(&queue, &TorvoEditor::CKyvUploadMgr::sigUploadStartNty, &m_here,
                         [=](const QString& id) { say("sending", id); });
        QObject::connect(&queue, &TorvoEditor::CKyvUploadMgr::sigUploadFinishedNty, &m_here,
                         [=](const QString& id, const QString& job, bool isDone) {
                             say(isDone ? "sent" : "not sent", id + (isDone ? " as " + job : QString()));
                         });
        QObject::connect(
            &queue, &TorvoEditor::CKyvUploadMgr::sigSortChanged, &m_here,
            [=](bool first, bool second) { say("moved", QString("%1%2").arg(first).arg(second)); });
    }

    /// The lines that are no news of positions.
    [[nodiscard]] QStringList events() const
    {
        QStringList found;
        for (const auto& line : lines) {
            if (!line.startsWith("moved"))
                found.append(line);
        }
        return found;
    }

    QStringList lines;

private:
    QObject m_here;
};

inline QStringList Repackaging(const TorvoEditor::CKyvUploadMgr& queue)
{
    QStringList ids;
    queue.GetRepackageList(ids);
    return ids;
}

inline QStringList Uploading(const TorvoEditor::CKyvUploadMgr& queue)
{
    QStringList ids;
    queue.GetUploadList(ids);
    return ids;
}

/// Unpacking stops at a gate.
inline void StopUnpackingAt(Gate& gate)
{
    Fakes::SetZipScript({[&gate](const QString& archive, const QString& folder) {
                             gate.pass();
                             return Fakes::UnpackSample(archive, folder);
                         },
                         {}});
}

/// Sending stops at a gate.
inline void StopSendingAt(Gate& gate)
{
    Fakes::ChangeConversions([&gate](Fakes::KyvConversions& server) {
        server.upload = [&gate](const QString&, const QString&) {
            gate.pass();
            return true;
        };
    });
}
