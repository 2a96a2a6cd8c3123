#include <ovpluginbase.h>

#include <gtest/gtest.h>

namespace {

class PlainPlugin : public OvPluginBase {
public:
    PlainPlugin() : OvPluginBase(QStringLiteral("PLAIN"), QStringLiteral("/scripts")) {
    }
    bool init() override {
        return true;
    }
};

} // namespace

TEST(PluginBase, AnswersToItsNames) {
    PlainPlugin plugin;
    OvPluginInterface* interface = &plugin;
    EXPECT_EQ(plugin.qt_metacast("OvPluginBase"), static_cast<OvPluginBase*>(&plugin));
    EXPECT_EQ(plugin.qt_metacast("OvPluginInterface"), interface);
    EXPECT_EQ(plugin.qt_metacast(OVHOST_PLUGIN_INTERFACE_IID), interface);
    EXPECT_EQ(plugin.qt_metacast("OvTracePlugin"), nullptr);
    EXPECT_EQ(plugin.qt_metacast(nullptr), nullptr);
}

TEST(PluginBase, ReportsTheIdentifierItWasGiven) {
    PlainPlugin plugin;
    EXPECT_EQ(plugin.getPluginInfo().get("ID").toString(), "PLAIN");
}

TEST(PluginBase, TranslatesInItsOwnContext) {
    EXPECT_EQ(OvPluginBase::tr("no translation is loaded", "", -1), "no translation is loaded");
    EXPECT_STREQ(OvPluginBase::staticMetaObject.className(), "OvPluginBase");
}
