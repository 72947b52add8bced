// SPDX-License-Identifier: MIT

/// Runs the tst_*.qml files of this folder. They find the real models of the screens, and the log, under the
/// name "screens".

#include "KYVConvertCommon/kyvconvertstate.h"
#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"
#include "convert/kyvconvertmodel.h"
#include "core/tools.h"
#include "floorscreens.h"
#include "view/context/editorcontrol/gridviewdata.h"
#include "view/context/editorcontrol/gridviewlistmodel.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStandardItem>
#include <QtQuickTest>

namespace
{

QStringList warnings;
QStringList infos;
QtMessageHandler earlierHandler = nullptr;

/// What the platforms without a window system say about themselves is no matter of the screens.
bool IsAboutThePlatform(const QString& text)
{
    return text.startsWith(QLatin1String("This plugin does not support"));
}

void TakeLine(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtWarningMsg && !IsAboutThePlatform(text))
        warnings.append(text);
    else if (type == QtInfoMsg || type == QtDebugMsg)
        infos.append(text);
    if (earlierHandler != nullptr)
        earlierHandler(type, context, text);
}

/// The test library puts its own handler in place when the first test begins, so this is called again and
/// again.
void Listen()
{
    const QtMessageHandler current = qInstallMessageHandler(TakeLine);
    if (current != TakeLine)
        earlierHandler = current;
}

class Screens : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// A setting of the environment, empty without.
    Q_INVOKABLE QString setting(const QString& name) const { return qEnvironmentVariable(qPrintable(name)); }

    /// Saves a picture of the item's window.
    Q_INVOKABLE bool shoot(QQuickItem* item, const QString& path) const
    {
        return item->window()->grabWindow().save(path);
    }

    Q_INVOKABLE void listen() { Listen(); }

    Q_INVOKABLE QStringList takeWarnings() { return std::exchange(warnings, {}); }
    Q_INVOKABLE QStringList takeInfos() { return std::exchange(infos, {}); }

    Q_INVOKABLE QObject* makeCards()
    {
        auto* cards = new TorvoEditor::CGridViewListModel(this);
        new QAbstractItemModelTester(cards, cards);
        return cards;
    }

    /// Many cards at once. The tester, which looks at every row after each change, stays away.
    Q_INVOKABLE QObject* makeManyCards(int count)
    {
        auto* cards = new TorvoEditor::CGridViewListModel(this);
        for (int number = 0; number < count; ++number) {
            addCard(cards, {{QStringLiteral("guid"), QStringLiteral("g%1").arg(number)},
                            {QStringLiteral("name"), QStringLiteral("工程%1").arg(number)}});
        }
        return cards;
    }

    Q_INVOKABLE QObject* addCard(QObject* model, const QVariantMap& values)
    {
        auto* card = new TorvoEditor::CGridViewData;
        card->setImag(QStringLiteral("qrc:/images/card_ic_default.png"));
        card->setTypeImag(QStringLiteral("qrc:/images/bar_ic_bim.png"));
        card->setProjType(QStringLiteral("BIM"));
        for (auto value = values.begin(); value != values.end(); ++value)
            card->setProperty(value.key().toUtf8().constData(), value.value());
        card->setTipText(values.value(QStringLiteral("tip")).toString());
        qobject_cast<TorvoEditor::CGridViewListModel*>(model)->addProjectInfo(card);
        return card;
    }

    Q_INVOKABLE void setTip(QObject* card, const QString& text)
    {
        qobject_cast<TorvoEditor::CGridViewData*>(card)->setTipText(text);
    }

    /// The list of a project's models, each a map with guid, name, state, sort and process.
    Q_INVOKABLE QObject* makeModels(const QVariantList& rows)
    {
        auto* models = new TorvoEditor::CKyvConvertModel(this);
        new QAbstractItemModelTester(models, models);
        setModels(models, rows);
        return models;
    }

    Q_INVOKABLE void setModels(QObject* models, const QVariantList& rows)
    {
        TorvoEditor::CKyvConvertModel::Rows made;
        for (const QVariant& each : rows) {
            const auto map = each.toMap();
            auto* row = new TorvoEditor::CKyvConvertData;
            row->setGuid(map.value(QStringLiteral("guid")).toString());
            row->setName(map.value(QStringLiteral("name")).toString());
            row->setSort(map.value(QStringLiteral("sort"), -1).toInt());
            row->setProcess(map.value(QStringLiteral("process")).toDouble());
            row->showState(map.value(QStringLiteral("state")).toInt());
            made.push_back(row);
        }
        qobject_cast<TorvoEditor::CKyvConvertModel*>(models)->resetData(made);
    }

    /// A sorted tree of rows, each a map with the keys of an item and, under "rows", its children.
    Q_INVOKABLE QObject* makeTree(const QVariantList& rows)
    {
        auto* tree = new XHUTILITY::CTreeModel(this);
        append(tree->invisibleRootItem(), rows);
        auto* sorted = new XHUTILITY::CSortTreeModel(this);
        sorted->setSourceModel(tree);
        sorted->setSearchKey(QStringLiteral("text1"));
        sorted->sort(0, Qt::AscendingOrder);
        return sorted;
    }

    /// Width in pixels of a picture in the resource, 0 when it is not there.
    Q_INVOKABLE int pictureWidth(const QString& url) const
    {
        return QImageReader(QString(url).replace(QLatin1String("qrc:/"), QLatin1String(":/"))).size().width();
    }

    /// The names under qrc:/images/ that a list of names lacks, at one, two and three pixels to the point.
    Q_INVOKABLE QStringList missingPictures(const QStringList& names) const
    {
        QStringList missing;
        for (const QString& name : names) {
            for (const char* suffix : {"", "@2x", "@3x"}) {
                const QString path = QStringLiteral(":/images/%1%2.png").arg(name, QLatin1String(suffix));
                if (!QFile::exists(path))
                    missing.append(path);
            }
        }
        return missing;
    }

    /// The share of pixels that one of two pictures of one size draws and the other does not, whatever the
    /// colours.
    Q_INVOKABLE double differenceInShape(const QString& one, const QString& other) const
    {
        const QImage first(QString(one).replace(QLatin1String("qrc:/"), QLatin1String(":/")));
        const QImage second(QString(other).replace(QLatin1String("qrc:/"), QLatin1String(":/")));
        int different = 0;
        for (int y = 0; y < first.height(); ++y) {
            for (int x = 0; x < first.width(); ++x)
                different += (qAlpha(first.pixel(x, y)) > 127) != (qAlpha(second.pixel(x, y)) > 127) ? 1 : 0;
        }
        return double(different) / (first.width() * first.height());
    }

    /// Role, name and first action of an item as a screen reader gets them.
    Q_INVOKABLE QVariantMap spoken(QObject* item) const
    {
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
        if (interface == nullptr)
            return {};
        const auto* actions = interface->actionInterface();
        return {{QStringLiteral("role"), int(interface->role())},
                {QStringLiteral("name"), interface->text(QAccessible::Name)},
                {QStringLiteral("description"), interface->text(QAccessible::Description)},
                {QStringLiteral("focusable"), bool(interface->state().focusable)},
                {QStringLiteral("actions"), actions != nullptr ? actions->actionNames() : QStringList()}};
    }

    /// Presses an item as a screen reader does.
    Q_INVOKABLE void pressBySpeech(QObject* item) const
    {
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
        interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

private:
    static void append(QStandardItem* parent, const QVariantList& rows)
    {
        for (const QVariant& row : rows) {
            QVariantMap map = row.toMap();
            const QVariantList children = map.take(QStringLiteral("rows")).toList();
            auto* item = new QStandardItem;
            item->setData(map, XHUTILITY::CTreeModel::valueRole);
            parent->appendRow(item);
            append(item, children);
        }
    }
};

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        qmlRegisterType<TorvoEditor::CGridViewData>("myData.CGridViewData", 1, 0, "CGridViewData");
        qmlRegisterSingletonType<TorvoEditor::Tools>(
            "Tools", 1, 0, "Tools",
            [](QQmlEngine*, QJSEngine*) -> QObject* { return new TorvoEditor::Tools; });
        qmlRegisterType<KYVConvertCommon::CKYVConvertState>("CKYVConvertState", 1, 0, "KYVConvertState");
        qmlRegisterAnonymousType<XHUTILITY::CSortTreeModel>("XHUtility", 1);
        engine->rootContext()->setContextProperty(QStringLiteral("screens"), new Screens(engine));
        engine->rootContext()->setContextProperty(QStringLiteral("floors"), new FloorScreens(engine));
    }

    void cleanupTestCase() { qInstallMessageHandler(earlierHandler); }
};

} // namespace

QUICK_TEST_MAIN_WITH_SETUP(screens, Setup)

#include "screentest.moc"
