// SPDX-License-Identifier: MIT
#include <QProcess>
#include <QTest>

namespace
{

struct Symbol {
    QChar kind; ///< "T" for code, as nm has it
    QString name;
};

/// The symbols that a library defines for others, names as they stand in the source. The linker keeps some
/// local ones in the same table, which nobody outside can bind to.
QList<Symbol> DefinedSymbols(const QString& library)
{
    QProcess nm;
    nm.start("nm", {"--dynamic", "--defined-only", "--extern-only", "--demangle", library});
    if (!nm.waitForFinished() || nm.exitCode() != 0)
        return {};
    QList<Symbol> symbols;
    const auto lines = QString::fromUtf8(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    for (const auto& line : lines)
        symbols.append({line.at(17), line.mid(19)});
    return symbols;
}

QStringList NamesOf(const QList<Symbol>& symbols)
{
    QStringList names;
    for (const auto& symbol : symbols)
        names.append(symbol.name);
    return names;
}

} // namespace

class TestExports : public QObject
{
    Q_OBJECT

private slots:
    void libraryShowsTheOneClassAndNothingElse();
    void libraryShowsAllOperationsOfTheClass();
    void otherLibrariesShowMore();
};

void TestExports::libraryShowsTheOneClassAndNothingElse()
{
    const auto symbols = DefinedSymbols(TORVO_HOME_LIBRARY);
    QVERIFY(!symbols.isEmpty());
    for (const auto& symbol : symbols) {
        QVERIFY2(symbol.name.startsWith("TorvoEditor::TorvoHomePlugin::"), qPrintable(symbol.name));
        QCOMPARE(symbol.kind, QChar('T'));
    }
}

void TestExports::libraryShowsAllOperationsOfTheClass()
{
    const auto names = NamesOf(DefinedSymbols(TORVO_HOME_LIBRARY));
    const QString plugin = "TorvoEditor::TorvoHomePlugin::";
    QVERIFY(names.contains(plugin + "TorvoHomePlugin()"));
    QVERIFY(names.contains(plugin + "~TorvoHomePlugin()"));
    QVERIFY(names.contains(plugin + "operator=(TorvoEditor::TorvoHomePlugin const&)"));
    QVERIFY(names.contains(plugin + "Init(TorvoSDK::ITorvoSDKPlugin*, TorvoSDK::CTorvoSession const&)"));
    QVERIFY(names.contains(plugin + "UnInit()"));
}

void TestExports::otherLibrariesShowMore()
{
    // That the reading above sees symbols of other classes at all.
    QVERIFY(DefinedSymbols(TORVO_QT_CORE_LIBRARY).size() > 1000);
}

QTEST_GUILESS_MAIN(TestExports)
#include "test_exports.moc"
