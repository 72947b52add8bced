// SPDX-License-Identifier: MIT
#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"
#include "fakes/fakehost.h"
#include "fakes/startedhome.h"
#include "prepareddatabase.h"
#include "project/projectconfig.h"
#include "project/projectmgr.h"
#include "ratio.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <functional>
#include <vector>

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QStandardItemModel>
#include <QVariantMap>

// The tree of the left panel against a bare QStandardItemModel with the same rows. Database and server answer
// from memory, with answers that lie ready.

namespace
{

using namespace TorvoEditor;

constexpr int projects = 10000;
constexpr int runs = 9;

QString GuidOf(int number)
{
    return QStringLiteral("%1-0000-4000-8000-000000000000").arg(number, 8, 16, QLatin1Char('0'));
}

/// 10,000 projects on the server and 10,000 here, half of which are the same.
void Fill(Fakes::ProjectHost& host)
{
    for (int i = 0; i < projects; ++i)
        host.addServerProject(GuidOf(i), QStringLiteral("工程 %1").arg(i * 7919 % projects), i % 2);
    QJsonArray list;
    for (int i = projects / 2; i < projects + projects / 2; ++i) {
        const QString guid = GuidOf(i);
        PreparedDatabase::instance().add(guid.toStdWString(), QStringLiteral("工程 %1").arg(i).toStdWString(),
                                         i % 2 == 0 ? L"CIM" : L"BIM");
        list.append(QJsonObject{{"guid", guid}});
    }
    WriteProjectConfig(QCoreApplication::applicationDirPath() + "/ProjectConfig.json",
                       EncodeProjectConfig(list));
}

std::vector<QVariantMap> RowsOf(const QAbstractItemModel& model)
{
    std::vector<QVariantMap> rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.push_back(model.index(row, 0).data(XHUTILITY::CTreeModel::valueRole).toMap());
    return rows;
}

/// Each row is made as the tree makes its own: a map of texts of its own, and not one that is there already.
void FillBare(QStandardItemModel& model, const std::vector<QVariantMap>& rows)
{
    for (const auto& row : rows) {
        QVariantMap own;
        for (auto value = row.begin(); value != row.end(); ++value)
            own.insert(value.key(), value.value());
        auto* item = new QStandardItem;
        item->setData(own, XHUTILITY::CTreeModel::valueRole);
        model.appendRow(item);
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argumentCount, arguments);
    Fakes::Host host;
    Fill(host.projects);
    CHomeApp::instance().m_plugin = &host;
    if (!CHomeApp::instance().Init(Fakes::TestSession()))
        return 2;
    QObject owner;
    auto* panel = new CPanelModel(&owner);
    panel->InitGrouping();
    const auto rows = RowsOf(*panel->treeModel().value<XHUTILITY::CSortTreeModel*>());
    std::fprintf(stderr, "%zu rows\n", rows.size());

    std::vector<double> ours;
    std::vector<double> bare;
    for (int run = 0; run < runs; ++run) {
        ours.push_back(bench::SecondsOf([&] { panel->RebuildTree(); }));
        QStandardItemModel model;
        bare.push_back(bench::SecondsOf([&] { FillBare(model, rows); }));
    }
    std::fprintf(stderr, "ours %.1f ms, bare %.1f ms (medians of %d)\n", bench::MedianOf(ours) * 1000,
                 bench::MedianOf(bare) * 1000, runs);
    bench::Report report;
    report.ratio("tree build of 10,000 + 10,000 projects", bench::MedianOf(ours) / bench::MedianOf(bare), 2.0,
                 "a bare QStandardItemModel filled with the same rows");
    return report.exitCode();
}
