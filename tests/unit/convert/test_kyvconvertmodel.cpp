// SPDX-License-Identifier: MIT
#include "convert/kyvconvertmodel.h"

#include <memory>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

namespace
{

CKyvConvertData* Row(const QString& guid, int state = 0)
{
    auto* row = new CKyvConvertData;
    row->setGuid(guid);
    row->setName("name of " + guid);
    row->showState(state);
    return row;
}

QStringList Names(const CKyvConvertModel& model)
{
    QStringList names;
    for (int index = 0; index < model.getCount(); ++index)
        names.append(model.getName(index));
    return names;
}

} // namespace

class TestKyvConvertModel : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreGivenUnderTheirRole();
    void rowsAreCountedAndNamed();
    void onlyFinishedModelsAreValid();
    void rowIsInsertedAtTheEnd();
    void firstRowOfAGuidIsFound();
    void removedRowIsTheCallers();
    void removalOfAnUnknownRowChangesNothing();
    void resetDeletesTheRowsAndTakesOthers();
    void rowsGoWithTheModel();
};

void TestKyvConvertModel::rowsAreGivenUnderTheirRole()
{
    CKyvConvertModel model;
    const QAbstractItemModelTester tester(&model);
    auto* row = Row("a");
    model.addData(row);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{256, "listData"}}));
    QVERIFY(model.data(model.index(0), 256).value<CKyvConvertData*>() == row);
    QVERIFY(!model.data(model.index(0), Qt::DisplayRole).isValid());
    QVERIFY(!model.data(QModelIndex(), 256).isValid());
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.rowCount(model.index(0)), 0);
}

void TestKyvConvertModel::rowsAreCountedAndNamed()
{
    CKyvConvertModel model;
    QCOMPARE(model.getCount(), 0);
    model.addData(Row("a"));
    model.addData(Row("b"));
    QCOMPARE(model.getCount(), 2);
    QCOMPARE(model.getName(1), QString("name of b"));
    QCOMPARE(model.getName(2), QString());
    QCOMPARE(model.getName(-1), QString());
}

void TestKyvConvertModel::onlyFinishedModelsAreValid()
{
    CKyvConvertModel model;
    for (int state = 0; state <= 9; ++state)
        model.addData(Row(QString::number(state), state));
    model.addData(Row("last", 0));
    QCOMPARE(model.getValidCount(), 2);
    QCOMPARE(model.getValidName(0), QString("name of 0"));
    QCOMPARE(model.getValidName(10), QString("name of last"));
    for (int index = 1; index <= 9; ++index)
        QCOMPARE(model.getValidName(index), QString());
    QCOMPARE(model.getValidName(11), QString());
    QCOMPARE(model.getValidName(-1), QString());
}

void TestKyvConvertModel::rowIsInsertedAtTheEnd()
{
    CKyvConvertModel model;
    const QAbstractItemModelTester tester(&model);
    model.addData(Row("a"));
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.addData(Row("b"));
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 1);
    QCOMPARE(Names(model), QStringList({"name of a", "name of b"}));
}

void TestKyvConvertModel::firstRowOfAGuidIsFound()
{
    CKyvConvertModel model;
    auto* first = Row("a");
    model.addData(Row("b"));
    model.addData(first);
    model.addData(Row("a"));
    QVERIFY(model.findData("a") == first);
    QVERIFY(model.findData("c") == nullptr);
}

void TestKyvConvertModel::removedRowIsTheCallers()
{
    CKyvConvertModel model;
    const QAbstractItemModelTester tester(&model);
    const std::unique_ptr<CKyvConvertData> row(Row("a"));
    model.addData(Row("b"));
    model.addData(row.get());
    model.addData(Row("a"));
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.removeData("a");
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.first().at(1).toInt(), 1);
    QCOMPARE(model.getCount(), 2);
    QCOMPARE(row->name(), QString("name of a"));
    QVERIFY(row->parent() == nullptr);
}

void TestKyvConvertModel::removalOfAnUnknownRowChangesNothing()
{
    CKyvConvertModel model;
    model.addData(Row("a"));
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.removeData("b");
    QCOMPARE(removed.count(), 0);
    QCOMPARE(model.getCount(), 1);
}

void TestKyvConvertModel::resetDeletesTheRowsAndTakesOthers()
{
    CKyvConvertModel model;
    const QAbstractItemModelTester tester(&model);
    const QPointer<CKyvConvertData> old = Row("a");
    model.addData(old);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.resetData({Row("b"), Row("c")});
    QCOMPARE(resets.count(), 1);
    QVERIFY(old.isNull());
    QCOMPARE(Names(model), QStringList({"name of b", "name of c"}));
}

void TestKyvConvertModel::rowsGoWithTheModel()
{
    const QPointer<CKyvConvertData> row = Row("a");
    {
        CKyvConvertModel model;
        model.addData(row);
    }
    QVERIFY(row.isNull());
}

QTEST_GUILESS_MAIN(TestKyvConvertModel)
#include "test_kyvconvertmodel.moc"
