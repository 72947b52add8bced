// SPDX-License-Identifier: MIT
#include "editortab/document/modelloader.h"

#include "gltf/modelwriter.h"
#include "models.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using editortab::ModelLoader;

class TestModelLoader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void modelsComeOneAfterTheOtherWithTheirNumbers();
    void fileThatCannotBeReadIsToldAndTheNextOneComes();
    void resultsComeOnTheThreadThatListens();
    void loaderCanGoWhileItReads();

private:
    QTemporaryDir m_folder;
    QString m_house;
};

void TestModelLoader::initTestCase()
{
    m_house = m_folder.filePath("house.glb");
    QVERIFY(gltf::WriteModel(House(), m_house.toStdString(), "test"));
}

void TestModelLoader::modelsComeOneAfterTheOtherWithTheirNumbers()
{
    ModelLoader loader({m_house, m_house, m_house});
    QSignalSpy loaded(&loader, &ModelLoader::loaded);
    loader.start();
    QTRY_COMPARE(loaded.count(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(loaded.at(i).at(0).toInt(), i);
        const auto model = loaded.at(i).at(1).value<editortab::SharedModel>();
        QVERIFY(model != nullptr);
        QCOMPARE(Surfaces(*model), Surfaces(House()));
    }
}

void TestModelLoader::fileThatCannotBeReadIsToldAndTheNextOneComes()
{
    ModelLoader loader({m_folder.filePath("gone.glb"), m_house});
    QSignalSpy loaded(&loader, &ModelLoader::loaded);
    QSignalSpy failed(&loader, &ModelLoader::failed);
    loader.start();
    QTRY_COMPARE(loaded.count(), 1);
    QCOMPARE(loaded.at(0).at(0).toInt(), 1);
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.at(0).at(0).toInt(), 0);
    QVERIFY(failed.at(0).at(1).toString().contains("gone.glb"));
}

void TestModelLoader::resultsComeOnTheThreadThatListens()
{
    ModelLoader loader({m_house});
    QObject listener;
    QThread* thread = nullptr;
    connect(&loader, &ModelLoader::loaded, &listener, [&] { thread = QThread::currentThread(); });
    loader.start();
    QTRY_VERIFY(thread != nullptr);
    QCOMPARE(thread, QThread::currentThread());
}

void TestModelLoader::loaderCanGoWhileItReads()
{
    QStringList files;
    for (int i = 0; i < 1000; ++i)
        files += m_house;
    std::atomic<int> read = 0;
    {
        ModelLoader loader(files);
        connect(
            &loader, &ModelLoader::loaded, &loader, [&] { ++read; }, Qt::DirectConnection);
        loader.start();
        QTRY_VERIFY(read > 0);
    }
    QVERIFY2(read < 1000, "it ends after the file that is being read");
}

QTEST_GUILESS_MAIN(TestModelLoader)
#include "test_modelloader.moc"
