// The test program. A warning or worse of GLib, GTK or the page agent fails the test that caused it.
#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/webkit/engine/Sandbox.h"

namespace {

// The screen of a test machine has no session bus and no bus for screen readers.
constexpr std::array<std::string_view, 2> kTolerated{"session bus", "a11y bus"};

GLogWriterOutput FailOnNoise(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer)
{
    if (level & (G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR)) {
        char* line = g_log_writer_format_fields(level, fields, count, FALSE);
        const std::string message = line;
        g_free(line);
        for (const auto& part : kTolerated) {
            if (message.find(part) != std::string::npos) return G_LOG_WRITER_HANDLED;
        }
        if (testing::UnitTest::GetInstance()->current_test_info()) ADD_FAILURE() << message;
    }
    return g_log_writer_default(level, fields, count, nullptr);
}

/// Where no process may get a sandbox of its own, the engine would not start one web process.
void CheckSandbox()
{
    const std::string obstacle = velmora::SandboxObstacle();
    if (obstacle.empty()) return;
    std::printf("NOTE: this machine gives no sandbox, so the tests run without it: %s\n", obstacle.c_str());
    g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", TRUE);
}

}  // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    g_setenv("GTK_A11Y", "none", TRUE);
    g_log_set_writer_func(FailOnNoise, nullptr, nullptr);
    CheckSandbox();
    return RUN_ALL_TESTS();
}
