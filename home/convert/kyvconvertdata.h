// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// One row of the list of a project's models: finished, on the server, or still on this machine. GUI thread.
class CKyvConvertData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString guid READ guid NOTIFY guidChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(QString image READ image NOTIFY imageChanged)
    Q_PROPERTY(QString pointText READ pointText NOTIFY pointTextChanged)
    Q_PROPERTY(int state READ state NOTIFY stateChanged)
    Q_PROPERTY(int sort READ sort NOTIFY sortChanged)
    Q_PROPERTY(double process READ process NOTIFY processChanged)

public:
    explicit CKyvConvertData(QObject* parent = nullptr);

    /// The server's id, or the local one of a task on this machine.
    [[nodiscard]] QString guid() const { return m_guid; }
    void setGuid(const QString& guid);
    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString& name);
    [[nodiscard]] QString image() const { return m_image; }
    void setImage(const QString& image);
    [[nodiscard]] QString pointText() const { return m_pointText; }
    void setPointText(const QString& pointText);
    /// A number of KyvConvertState.
    [[nodiscard]] int state() const { return m_state; }
    void setState(int state);
    /// Place in the queue that it waits in, below 0 for none.
    [[nodiscard]] int sort() const { return m_sort; }
    void setSort(int sort);
    /// 0 to 1.
    [[nodiscard]] double process() const { return m_process; }
    void setProcess(double process);

    /// State, picture and text together.
    void showState(int state);

signals:
    void guidChanged();
    void nameChanged();
    void imageChanged();
    void pointTextChanged();
    void stateChanged();
    void sortChanged();
    void processChanged();

private:
    template<class Value>
    void change(Value& member, const Value& value, void (CKyvConvertData::*changed)())
    {
        if (member == value)
            return;
        member = value;
        emit(this->*changed)();
    }

    QString m_guid;
    QString m_name;
    QString m_image;
    QString m_pointText;
    int m_state = 0;
    int m_sort = -1;
    double m_process = 0;
};

} // namespace TorvoEditor
