// SPDX-License-Identifier: MIT
#include "convert/floorinfomgr.h"
#include "convert/floormatchedctrl.h"
#include "convert/floortempmodel.h"
#include "fakes/fakefloorinfo.h"
#include "fakes/startedhome.h"
#include "ratio.h"

#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

// The floor dialog with very many floors: how long the GUI thread is busy until the list stands again, with
// the column of the floors on the screen. Held against one frame of a screen that shows sixty a second, and
// against what the same takes with a quarter of the rows.

namespace
{

using namespace TorvoEditor;

constexpr int rows = 10'000;
constexpr int fewerRows = rows / 4;
constexpr int runs = 9;
constexpr double frame = 1.0 / 60;

const QString bim = QStringLiteral("bim");
const QString model = QStringLiteral("model");

/// Every floor has one floor of a model.
void Store(int count)
{
    QList<BIZCOMMON::FLOORINFO::TFloorRec> stored;
    QStringList names;
    for (int floor = 0; floor < count; ++floor) {
        const auto name = QStringLiteral("F%1").arg(floor);
        stored.append({name, {{model, {name}}}});
        names.append(name);
    }
    Fakes::FloorsOf(bim) = {stored, {}, {}, {{model, names}}};
}

double ThreadSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

class Dialog
{
public:
    Dialog()
        : m_ctrl(*CHomeApp::instance().GetMgr<CFloorMatchedCtrl>())
        , m_rows(*m_ctrl.findChild<CFloorTempModel*>())
    {
        m_ctrl.RegisterContext(m_view.rootContext());
        QQmlComponent component(m_view.engine());
        component.setData("import QtQuick 2.15\nimport \"qrc:/qmls/FloorMatch/Floor\"\nFloorAll {}", QUrl());
        auto* column = qobject_cast<QQuickItem*>(component.create());
        if (column == nullptr)
            qFatal("no column: %s", qPrintable(component.errorString()));
        column->setSize({279, 508});
        m_view.setContent(QUrl(), &component, column);
        m_view.show();
        m_list = column->findChild<QQuickItem*>(QStringLiteral("floorList"));
    }

    void fill(int count)
    {
        Store(count);
        m_ctrl.refillFloorInfo(bim);
        settle();
    }
    /// The seconds of this thread until the change stands on the screen. What other programs take is not
    /// counted.
    double seconds(const std::function<void()>& change)
    {
        const auto start = ThreadSeconds();
        change();
        settle();
        return ThreadSeconds() - start;
    }

    double region()
    {
        const int last = m_rows.rowCount() - 1;
        return seconds([=, this] { m_rows.regionSelected(last, 0); });
    }
    double move()
    {
        m_rows.clearAndSelected(m_rows.rowCount() / 2);
        return seconds([this] { m_ctrl.moveUpCurrentModel(); });
    }
    /// Every tenth row: the removals are far from each other, which is the worst case.
    double removal()
    {
        m_rows.clearAndSelected(0);
        for (int row = 10; row < m_rows.rowCount(); row += 10)
            m_rows.ctrlSelected(row);
        return seconds([this] { m_ctrl.removeSelectedModel(); });
    }

private:
    void settle()
    {
        QMetaObject::invokeMethod(m_list, "forceLayout");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    CFloorMatchedCtrl& m_ctrl;
    CFloorTempModel& m_rows;
    QQuickView m_view;
    QQuickItem* m_list = nullptr;
};

double MedianOf(Dialog& dialog, int count, double (Dialog::*operation)())
{
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        dialog.fill(count);
        seconds.push_back((dialog.*operation)());
    }
    return bench::MedianOf(seconds);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication app(argumentCount, arguments);
    const Fakes::Surroundings surroundings;
    if (!CHomeApp::instance().Init(Fakes::TestSession()))
        return 2;
    CHomeApp::instance().GetMgr<CFloorInfoMgr>()->Create(bim);

    bench::Report report;
    Dialog dialog;
    const std::vector<std::pair<std::string, double (Dialog::*)()>> operations = {
        {"select all of 10,000 floors", &Dialog::region},
        {"move one of 10,000 floors", &Dialog::move},
        {"delete 1,000 of 10,000 floors", &Dialog::removal},
    };
    for (const auto& [name, operation] : operations) {
        const double few = MedianOf(dialog, fewerRows, operation);
        const double many = MedianOf(dialog, rows, operation);
        std::fprintf(stderr, "%s: %.2f ms, with a quarter of them %.2f ms (medians of %d)\n", name.c_str(),
                     many * 1000, few * 1000, runs);
        report.ratio(name.c_str(), many / frame, 0.96, "one frame at 60 frames a second");
        report.ratio(name.c_str(), many / (4 * few), 1.5, "four times what a quarter of the floors takes");
    }
    return report.exitCode();
}
