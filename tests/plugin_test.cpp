// Loads the built module as the host does. This program links neither the module nor the engine.

#include <QCborStreamReader>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QPointer>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <ovplugininterface.h>
#include <ovscripthandler.h>

namespace {

constexpr const char* Module = OVTRACE_MODULE;
constexpr const char* InterfaceIid = "example.korvid.KORVID.OvPluginInterface/1.0";

QStringList debugLines;

void collectDebugLines(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtDebugMsg)
        debugLines.append(text);
}

class Plugin : public testing::Test {
protected:
    void SetUp() override {
        object = loader.instance();
        ASSERT_NE(object, nullptr) << loader.errorString().toStdString();
        interface = qobject_cast<OvPluginInterface*>(object);
        ASSERT_NE(interface, nullptr);
    }

    QPluginLoader loader{QString::fromLocal8Bit(Module)};
    QObject* object = nullptr;
    OvPluginInterface* interface = nullptr;
};

using InstanceFunction = QObject* (*)();

InstanceFunction instanceFunction() {
    QLibrary library{QString::fromLocal8Bit(Module)};
    return reinterpret_cast<InstanceFunction>(library.resolve("qt_plugin_instance"));
}

} // namespace

TEST(PluginMetadata, HasIdentifierAndClassNameAlone) {
    const auto query = reinterpret_cast<QPluginMetaData (*)()>(
        QLibrary(QString::fromLocal8Bit(Module)).resolve("qt_plugin_query_metadata_v2"));
    ASSERT_NE(query, nullptr);
    const QPluginMetaData metaData = query();
    const QByteArray record(static_cast<const char*>(metaData.data),
                            static_cast<qsizetype>(metaData.size));
    EXPECT_EQ(record[0], 1) << "format version";
    EXPECT_EQ(record[1], QT_VERSION_MAJOR);
    EXPECT_EQ(record[2], QT_VERSION_MINOR);
    QCborStreamReader map(record.mid(4));
    ASSERT_TRUE(map.isMap());
    EXPECT_FALSE(map.isLengthKnown());
    ASSERT_TRUE(map.enterContainer());
    QMap<int, QString> entries;
    while (map.hasNext()) {
        const auto key = static_cast<int>(map.toInteger());
        ASSERT_TRUE(map.next());
        ASSERT_TRUE(map.isString());
        entries[key] = map.readString().data;
        ASSERT_EQ(map.readString().status, QCborStreamReader::EndOfString);
    }
    EXPECT_EQ(entries, (QMap<int, QString>{{2, "example.korvid.trace"}, {3, "OvTracePlugin"}}));
}

TEST(PluginMetadata, IsReadWithoutCreatingThePlugin) {
    const QPluginLoader loader{QString::fromLocal8Bit(Module)};
    const QJsonObject data = loader.metaData();
    EXPECT_EQ(data["IID"].toString(), "example.korvid.trace");
    EXPECT_EQ(data["className"].toString(), "OvTracePlugin");
    EXPECT_TRUE(data["MetaData"].toObject().isEmpty());
}

TEST_F(Plugin, CastsThroughBothNamesOfTheInterface) {
    void* asClass = object->qt_metacast("OvTracePlugin");
    void* asInterface = object->qt_metacast("OvPluginInterface");
    EXPECT_EQ(asClass, object);
    EXPECT_EQ(object->qt_metacast(InterfaceIid), asInterface);
    EXPECT_EQ(asInterface, interface);
    EXPECT_NE(asInterface, asClass);
    EXPECT_EQ(object->qt_metacast("OvPluginBase"), object);
    EXPECT_EQ(object->qt_metacast("QObject"), object);
    EXPECT_EQ(object->qt_metacast("OvTraceBitmap"), nullptr);
    EXPECT_EQ(object->qt_metacast(nullptr), nullptr);
}

TEST_F(Plugin, InitWritesOneDebugLine) {
    debugLines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectDebugLines);
    const bool ready = interface->init();
    qInstallMessageHandler(previous);
    EXPECT_TRUE(ready);
    EXPECT_EQ(debugLines, QStringList{"OvTracePlugin::init"});
}

TEST_F(Plugin, ReportsItsInformationInOrder) {
    const OvPluginInfo info = interface->getPluginInfo();
    EXPECT_EQ(info.getKeys(), QList<QString>({"Version", "ID", "Name", "Description", "URL"}));
    EXPECT_EQ(info.get("Version").toString(), OVTRACE_VERSION);
    EXPECT_EQ(info.get("ID").toString(), "TRACE");
    EXPECT_EQ(info.get("Name").toString(), "KORVID Trace");
    EXPECT_EQ(info.get("Description").toString(), "Bitmap vectorization.");
    EXPECT_EQ(info.get("URL").toString(), "https://korvid.example/trace");
}

TEST_F(Plugin, OtherOperationsDoNothing) {
    OvScriptHandler scripts;
    debugLines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectDebugLines);
    interface->initTranslations();
    interface->initScriptExtensions(scripts);
    interface->postInit(OvPluginInterface::AllPluginsLoaded);
    interface->postInit(OvPluginInterface::AllDone);
    interface->uninit(false);
    qInstallMessageHandler(previous);
    EXPECT_TRUE(debugLines.isEmpty());
    EXPECT_EQ(interface->getPluginInfo().get("ID").toString(), "TRACE");
}

TEST_F(Plugin, HasOneInstanceWhileItLives) {
    const InstanceFunction instance = instanceFunction();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance(), object);
    EXPECT_EQ(instance(), object);
    const QPointer<QObject> guard(object);
    delete object;
    EXPECT_TRUE(guard.isNull());
    QObject* renewed = instance();
    ASSERT_NE(renewed, nullptr);
    EXPECT_EQ(instance(), renewed);
    EXPECT_STREQ(renewed->metaObject()->className(), "OvTracePlugin");
}

TEST(PluginLoading, CanBeRepeated) {
    for (int i = 0; i < 20; ++i) {
        QPluginLoader loader{QString::fromLocal8Bit(Module)};
        ASSERT_NE(loader.instance(), nullptr) << loader.errorString().toStdString();
        loader.unload();
    }
}

TEST(PluginFile, LoadsAndUnloadsAHundredTimesFromAStrangePlace) {
    const QTemporaryDir folder;
    const QString place = folder.filePath(QString::fromUtf8("Würfel und Spätzle – 図"));
    ASSERT_TRUE(QDir().mkpath(place));
    const QFileInfo module(QString::fromLocal8Bit(Module));
    const QString copy = place + '/' + module.fileName();
    ASSERT_TRUE(QFile::copy(module.filePath(), copy));
    for (int i = 0; i < 100; ++i) {
        QPluginLoader loader(copy);
        auto* plugin = qobject_cast<OvPluginInterface*>(loader.instance());
        ASSERT_NE(plugin, nullptr) << i << ": " << loader.errorString().toStdString();
        ASSERT_TRUE(plugin->init());
        ASSERT_EQ(plugin->getPluginInfo().get("ID").toString(), "TRACE");
        plugin->uninit(false);
        ASSERT_TRUE(loader.unload()) << loader.errorString().toStdString();
    }
}
