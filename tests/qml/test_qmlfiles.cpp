// SPDX-License-Identifier: MIT

/// What holds for every screen file of the tree.

#include <cmath>

#include <QColor>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QDir sourceDir(QStringLiteral(TORVO_SOURCE_DIR));

/// The screen files of the tree, relative to it.
QStringList QmlFiles(const QStringList& folders)
{
    QStringList files;
    for (const QString& folder : folders) {
        QDirIterator each(sourceDir.filePath(folder), {QStringLiteral("*.qml")}, QDir::Files,
                          QDirIterator::Subdirectories);
        while (each.hasNext())
            files.append(sourceDir.relativeFilePath(each.next()));
    }
    files.sort();
    return files;
}

void AddRows(const QStringList& folders)
{
    QTest::addColumn<QString>("file");
    for (const QString& file : QmlFiles(folders))
        QTest::newRow(qPrintable(file)) << file;
}

QString TextOf(const QString& file)
{
    QFile source(sourceDir.filePath(file));
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

/// Runs qmllint over one file: what it has to say, empty without a finding.
QString Lint(const QString& path)
{
    QProcess lint;
    lint.setProcessChannelMode(QProcess::MergedChannels);
    lint.start(QLibraryInfo::location(QLibraryInfo::BinariesPath) + QStringLiteral("/qmllint"), {path});
    if (!lint.waitForFinished() || lint.exitStatus() != QProcess::NormalExit)
        return QStringLiteral("qmllint does not run: ") + lint.errorString();
    const QString findings = QString::fromUtf8(lint.readAll());
    return lint.exitCode() == 0 || !findings.isEmpty() ? findings : QStringLiteral("failed without a word");
}

/// The difference in light that makes a text readable on its ground, as the web's guidelines reckon it.
double Luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& one, const QColor& other)
{
    const double a = Luminance(one);
    const double b = Luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// A colour by its name in EConfig, or one that is fixed elsewhere, by its value.
QColor ColorOf(const QString& name)
{
    if (name.startsWith(QLatin1Char('#')))
        return QColor(name);
    const QRegularExpression line(QStringLiteral("property color %1: \"(#[0-9a-f]{6})\"").arg(name));
    const QString config = TextOf(QStringLiteral("platform/editorcommon/qmls/Config/EConfig.qml"));
    return QColor(line.match(config).captured(1));
}

const QStringList allFolders{QStringLiteral("qmls"), QStringLiteral("platform"), QStringLiteral("shell"),
                             QStringLiteral("editortab"), QStringLiteral("tests")};
const QStringList screenFolders{QStringLiteral("qmls"), QStringLiteral("platform/editorcommon/qmls")};

} // namespace

class TestQmlFiles : public QObject
{
    Q_OBJECT

private slots:
    void qmllintFindsNothing_data() { AddRows(allFolders); }
    void qmllintFindsNothing()
    {
        QFETCH(QString, file);
        QCOMPARE(Lint(sourceDir.filePath(file)), QString());
    }

    void qmllintFindsABrokenFile()
    {
        const QTemporaryDir folder;
        QFile broken(folder.filePath(QStringLiteral("Broken.qml")));
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("import QtQuick 2.15\nItem { width: }\n");
        broken.close();
        QVERIFY(Lint(broken.fileName()).contains(QLatin1String("Broken.qml:2")));
    }

    void theScreensAreInTheResource_data() { AddRows(screenFolders); }
    void theScreensAreInTheResource()
    {
        QFETCH(QString, file);
        const bool isComponent = file.startsWith(QLatin1String("platform"));
        const QString list = TextOf(isComponent ? QStringLiteral("platform/editorcommon/editorcommon.qrc")
                                                : QStringLiteral("qmls/homescreens.qrc"));
        const QString entry =
            QString(file)
                .remove(QLatin1String("platform/editorcommon/"))
                .remove(QRegularExpression(isComponent ? QStringLiteral("^$") : QStringLiteral("^qmls/")));
        QVERIFY2(list.contains(QLatin1Char('>') + entry + QLatin1String("</file>")), qPrintable(entry));
    }

    void componentsAreNamedInTheirFolder_data() { AddRows({QStringLiteral("platform/editorcommon/qmls")}); }
    void componentsAreNamedInTheirFolder()
    {
        QFETCH(QString, file);
        const QFileInfo info(file);
        const QString line = QStringLiteral("%1 1.0 %2").arg(info.completeBaseName(), info.fileName());
        QVERIFY2(TextOf(info.path() + QStringLiteral("/qmldir")).contains(line), qPrintable(line));
    }

    void wordsForTheUserGoThroughTheTranslator_data() { AddRows(screenFolders); }
    void wordsForTheUserGoThroughTheTranslator()
    {
        QFETCH(QString, file);
        const QRegularExpression words(QStringLiteral("(\\w*\\(?)\"[^\"]*[\\x{4e00}-\\x{9fff}][^\"]*\""));
        const QStringList lines = TextOf(file).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            // Log lines are for developers, the names of font families for the system.
            if (line.contains(QLatin1String("console.")) || line.contains(QLatin1String("fontFamily")))
                continue;
            auto each = words.globalMatch(line);
            while (each.hasNext()) {
                const auto match = each.next();
                QVERIFY2(match.captured(1) == QLatin1String("qsTr("), qPrintable(line));
            }
        }
    }

    void coloursComeFromTheOnePlaceUnlessADrawingFixesThem_data() { AddRows(screenFolders); }
    void coloursComeFromTheOnePlaceUnlessADrawingFixesThem()
    {
        QFETCH(QString, file);
        if (file.endsWith(QLatin1String("EConfig.qml")))
            return;
        const QStringList fixed{
            QStringLiteral("#f0f0f0"), QStringLiteral("#dddddd"), QStringLiteral("#d9a44c"),
            QStringLiteral("#00c7f5"), QStringLiteral("#2e2e2e"), QStringLiteral("#2a2a2a"),
            QStringLiteral("#272727"), QStringLiteral("#1473e6"), QStringLiteral("#535353"),
            QStringLiteral("#636363"), QStringLiteral("#a0a0a0"), QStringLiteral("#adadad"),
            QStringLiteral("#494b4e"), QStringLiteral("#ffffff")};
        auto each = QRegularExpression(QStringLiteral("\"(#[0-9a-fA-F]+)\"")).globalMatch(TextOf(file));
        while (each.hasNext()) {
            const QString colour = each.next().captured(1);
            QVERIFY2(fixed.contains(colour), qPrintable(colour));
        }
    }

    void coloursAreThoseOfTheLook_data()
    {
        QTest::addColumn<QString>("value");
        const std::initializer_list<std::pair<const char*, const char*>> rows = {
            {"eBackGround", "#2e2e2e"},
            {"eGlobalBackGround", "#232325"},
            {"eGridBackGround", "#333336"},
            {"eDialogBackground", "#2a2a2c"},
            {"eBorder", "#3f3f44"},
            {"splitColor", "#3f3f44"},
            {"eTreeHover", "#38383c"},
            {"eTreeSelected", "#2f4a73"},
            {"eHoverBorderColor", "#4d4d55"},
            {"ePressedBorderColor", "#1473e6"},
            {"eTitleBtnActived", "#3b3b40"},
            {"eBtnSelected", "#3b3b40"},
            {"eTitleText", "#b8b8bd"},
            {"eTitleTextActived", "#ffffff"},
            {"textColor", "#dddddd"},
            {"eTextHighColor", "#ffffff"},
            {"tipTextColor", "#d9a44c"},
            {"eInputFieldBackGround", "#1f1f21"},
            {"eInputFieldBorder", "#4a4a50"},
            {"eInputFieldText", "#d0d0d4"},
            {"eInputFieldTextInvalid", "#ff6b6b"},
            {"eDialogBtn", "#46464c"},
            {"eDialogBtnText", "#f0f0f0"},
            {"eAccent", "#1473e6"},
            {"eProgress", "#00c7f5"},
        };
        for (const auto& [name, value] : rows)
            QTest::newRow(name) << QString::fromLatin1(value);
    }
    void coloursAreThoseOfTheLook()
    {
        QFETCH(QString, value);
        QCOMPARE(ColorOf(QString::fromLatin1(QTest::currentDataTag())).name(), value);
    }

    void textsCanBeReadOnTheirGrounds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("ground");
        QTest::addColumn<double>("least");
        const std::initializer_list<std::tuple<const char*, const char*, const char*, double>> rows = {
            {"name of a card", "eTextHighColor", "eGridBackGround", 7.0},
            {"waiting, on a card", "tipTextColor", "eGridBackGround", 4.5},
            {"current tab", "eTitleTextActived", "eTitleBtnActived", 4.5},
            {"other tab", "eTitleText", "eBackGround", 4.5},
            {"button of the title bar", "eDialogBtnText", "eBackGround", 4.5},
            {"button of the title bar under the pointer", "eDialogBtnText", "eTreeHover", 4.5},
            {"head of the panel", "#f0f0f0", "eBackGround", 4.5},
            {"row of the tree", "#dddddd", "eBackGround", 4.5},
            {"row under the pointer", "#dddddd", "eTreeHover", 4.5},
            {"selected row", "#dddddd", "eTreeSelected", 4.5},
            {"create button", "textColor", "eBackGround", 4.5},
            {"create button under the pointer", "eTextHighColor", "eBackGround", 4.5},
            {"text of a dialog", "textColor", "eDialogBackground", 4.5},
            {"title of a dialog", "eTextHighColor", "eDialogBackground", 4.5},
            {"button of a dialog", "eDialogBtnText", "eDialogBtn", 4.5},
            {"button of a dialog under the pointer", "eDialogBtnText", "eHoverBorderColor", 4.5},
            {"primary button of a dialog", "eTextHighColor", "eAccent", 4.5},
            {"primary button of a dialog under the pointer", "eTextHighColor", "eAccentHover", 4.5},
            {"chosen row of a list", "eTextHighColor", "eDialogBackground", 4.5},
            {"tool tip", "textColor", "eInputFieldBackGround", 4.5},
            {"name on a card that must be upgraded", "eTextHighColor", "eGridBackGround", 4.5},
            {"label of a field", "eInputFieldText", "eDialogBackground", 4.5},
            {"label of a field that is wrong", "eInputFieldTextInvalid", "eDialogBackground", 4.5},
            {"department of the form", "#dddddd", "#272727", 4.5},
            {"department under the pointer", "#dddddd", "#2a2a2a", 4.5},
            {"text in a field", "textColor", "eInputFieldBackGround", 4.5},
            {"hint in a field", "eQuietText", "eInputFieldBackGround", 4.5},
            {"hint on an empty tree", "eQuietText", "eBackGround", 4.5},
            {"hint on an empty grid", "eQuietText", "eGlobalBackGround", 4.5},
        };
        for (const auto& [name, text, ground, least] : rows)
            QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(ground) << least;
    }
    void textsCanBeReadOnTheirGrounds()
    {
        QFETCH(QString, text);
        QFETCH(QString, ground);
        QFETCH(double, least);
        QVERIFY(ColorOf(text).isValid());
        QVERIFY(ColorOf(ground).isValid());
        const double contrast = Contrast(ColorOf(text), ColorOf(ground));
        QVERIFY2(contrast >= least, qPrintable(QString::number(contrast)));
    }
};

QTEST_GUILESS_MAIN(TestQmlFiles)

#include "test_qmlfiles.moc"
