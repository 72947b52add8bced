// SPDX-License-Identifier: MIT
#include "treerows.h"

#include <QAbstractItemModelTester>
#include <QTest>

using XHUTILITY::CTreeModel;

class TestTreeModel : public QObject
{
    Q_OBJECT

private slots:
    void mapOfAnItemLiesOneRoleAboveTheUserRole();
    void screensReadTheMapUnderTheNameValue();
    void keepsTheRulesOfAModelWhileItemsComeAndGo();
};

void TestTreeModel::mapOfAnItemLiesOneRoleAboveTheUserRole()
{
    QCOMPARE(CTreeModel::valueRole, 257);
}

void TestTreeModel::screensReadTheMapUnderTheNameValue()
{
    QCOMPARE(CTreeModel().roleNames().value(257), QByteArray("value"));
}

void TestTreeModel::keepsTheRulesOfAModelWhileItemsComeAndGo()
{
    CTreeModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    auto* department = DepartmentItem(QStringLiteral("市政"));
    model.appendRow(department);
    department->appendRow(ProjectItem(QStringLiteral("桥")));
    department->appendRow(ProjectItem(QStringLiteral("路")));
    department->removeRow(0);
    QCOMPARE(Outline(model), QStringList({QStringLiteral("市政"), QStringLiteral(".路")}));
}

QTEST_GUILESS_MAIN(TestTreeModel)
#include "test_treemodel.moc"
