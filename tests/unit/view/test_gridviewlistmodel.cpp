// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/gridviewlistmodel.h"

#include <memory>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CGridViewData;
using TorvoEditor::CGridViewListModel;

class TestGridViewListModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void oneRoleGivesTheCard();
    void otherRolesAndRowsGiveNothing();
    void newCardComesLast();
    void nullIsIgnored();
    void removeTakesTheFirstOfItsGuidAndFreesIt();
    void removeOfNoOrAnUnknownGuidDoesNothing_data();
    void removeOfNoOrAnUnknownGuidDoesNothing();
    void removeClosesTheGap();
    void rowOutOfRangeIsNull();
    void cardIsFoundByItsGuid();
    void cardIsFoundByItsNewGuid();
    void clearOfAnEmptyListSaysNothing();
    void clearFreesTheCardsInOneReset();
    void tipTextCountsTheFilesAndTellsThePlaceOfTheFirst_data();
    void tipTextCountsTheFilesAndTellsThePlaceOfTheFirst();
    void tipTextGoesWhenTheProjectHasLeftTheQueue();

private:
    CGridViewData* add(const QString& guid);
    QStringList guids() const;

    std::unique_ptr<CGridViewListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestGridViewListModel::init()
{
    m_model = std::make_unique<CGridViewListModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestGridViewListModel::cleanup()
{
    m_tester.reset();
    m_model.reset();
}

CGridViewData* TestGridViewListModel::add(const QString& guid)
{
    auto* card = new CGridViewData;
    card->setGuid(guid);
    m_model->addProjectInfo(card);
    return card;
}

QStringList TestGridViewListModel::guids() const
{
    QStringList guids;
    for (int i = 0; i < m_model->count(); ++i)
        guids.append(m_model->getProjectInfoData(i)->guid());
    return guids;
}

void TestGridViewListModel::oneRoleGivesTheCard()
{
    auto* card = add("a");
    QCOMPARE(m_model->roleNames(), (QHash<int, QByteArray>{{256, "viewData"}}));
    QCOMPARE(m_model->data(m_model->index(0), 256).value<CGridViewData*>(), card);
}

void TestGridViewListModel::otherRolesAndRowsGiveNothing()
{
    add("a");
    QVERIFY(!m_model->data(m_model->index(0), Qt::DisplayRole).isValid());
    QVERIFY(!m_model->data(m_model->index(0), 257).isValid());
    QVERIFY(!m_model->data(QModelIndex(), 256).isValid());
    QVERIFY(!m_model->data(m_model->index(1), 256).isValid());
}

void TestGridViewListModel::newCardComesLast()
{
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    add("b");
    add("a");
    add("b");
    QCOMPARE(guids(), QStringList({"b", "a", "b"}));
    QCOMPARE(inserted.count(), 3);
    QCOMPARE(inserted.at(2).at(1).toInt(), 2);
}

void TestGridViewListModel::nullIsIgnored()
{
    m_model->addProjectInfo(nullptr);
    QCOMPARE(m_model->count(), 0);
}

void TestGridViewListModel::removeTakesTheFirstOfItsGuidAndFreesIt()
{
    const QPointer<CGridViewData> first = add("a");
    const QPointer<CGridViewData> second = add("a");
    m_model->removeProjectInfo("a");
    QVERIFY(first.isNull());
    QVERIFY(!second.isNull());
    QCOMPARE(m_model->getDataByGuid("a"), second.data());
}

void TestGridViewListModel::removeOfNoOrAnUnknownGuidDoesNothing_data()
{
    QTest::addColumn<QString>("guid");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QString("");
    QTest::newRow("unknown") << QString("b");
}

void TestGridViewListModel::removeOfNoOrAnUnknownGuidDoesNothing()
{
    QFETCH(QString, guid);
    add("a");
    add("");
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    m_model->removeProjectInfo(guid);
    QCOMPARE(m_model->count(), 2);
    QCOMPARE(removed.count(), 0);
}

void TestGridViewListModel::removeClosesTheGap()
{
    add("a");
    add("b");
    add("c");
    m_model->removeProjectInfo("b");
    QCOMPARE(guids(), QStringList({"a", "c"}));
}

void TestGridViewListModel::rowOutOfRangeIsNull()
{
    auto* card = add("a");
    QCOMPARE(m_model->getProjectInfoData(-1), nullptr);
    QCOMPARE(m_model->getProjectInfoData(0), card);
    QCOMPARE(m_model->getProjectInfoData(1), nullptr);
}

void TestGridViewListModel::cardIsFoundByItsGuid()
{
    auto* card = add("a");
    QCOMPARE(m_model->getDataByGuid("a"), card);
    QCOMPARE(m_model->getDataByGuid("b"), nullptr);
    QVERIFY(m_model->isContain("a"));
    QVERIFY(!m_model->isContain("A"));
}

void TestGridViewListModel::cardIsFoundByItsNewGuid()
{
    auto* card = add("a");
    auto* other = add("b");
    QVERIFY(m_model->isContain("a"));
    card->setGuid("c");
    QCOMPARE(m_model->getDataByGuid("c"), card);
    QVERIFY(!m_model->isContain("a"));
    other->setGuid("c");
    QCOMPARE(m_model->getDataByGuid("c"), card);
}

void TestGridViewListModel::clearOfAnEmptyListSaysNothing()
{
    QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    m_model->clear();
    QCOMPARE(reset.count(), 0);
}

void TestGridViewListModel::clearFreesTheCardsInOneReset()
{
    const QPointer<CGridViewData> card = add("a");
    add("b");
    QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    m_model->clear();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(m_model->count(), 0);
    QVERIFY(card.isNull());
    QVERIFY(!m_model->isContain("a"));
}

void TestGridViewListModel::tipTextCountsTheFilesAndTellsThePlaceOfTheFirst_data()
{
    QTest::addColumn<QList<int>>("positions");
    QTest::addColumn<QString>("text");
    QTest::newRow("one that is converted")
        << QList<int>{0} << QString::fromUtf8("共有1个文件转化中,\n你的第一个文件转换中");
    QTest::newRow("two that wait") << QList<int>{3, 2}
                                   << QString::fromUtf8("共有2个文件转化中,\n你的第一个文件排在第2位.");
    QTest::newRow("one of each") << QList<int>{1200, 0, 7}
                                 << QString::fromUtf8("共有3个文件转化中,\n你的第一个文件转换中");
    QTest::newRow("a plain number") << QList<int>{1234}
                                    << QString::fromUtf8("共有1个文件转化中,\n你的第一个文件排在第1234位.");
}

void TestGridViewListModel::tipTextCountsTheFilesAndTellsThePlaceOfTheFirst()
{
    QFETCH(QList<int>, positions);
    auto* card = add("a");
    auto* other = add("b");
    m_model->updateTipTexts({{"a", positions}});
    QTEST(card->tipText(), "text");
    QVERIFY(other->tipText().isEmpty());
}

void TestGridViewListModel::tipTextGoesWhenTheProjectHasLeftTheQueue()
{
    auto* card = add("a");
    QSignalSpy changed(card, &CGridViewData::tipTextChanged);
    m_model->updateTipTexts({{"a", {0}}});
    m_model->updateTipTexts({{"a", {0}}});
    QCOMPARE(changed.count(), 1);
    m_model->updateTipTexts({});
    QVERIFY(card->tipText().isEmpty());
    QCOMPARE(changed.count(), 2);
}

QTEST_GUILESS_MAIN(TestGridViewListModel)
#include "test_gridviewlistmodel.moc"
