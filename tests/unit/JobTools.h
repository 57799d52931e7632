// SPDX-License-Identifier: MIT
//
// What the jobs of diskutil are tested with: tools that do what the test says, and a bundle.
#pragma once

#include "tools/diskutil/Personality.h"
#include "tools/diskutil/ToolRunner.h"

#include <vector>

class TestTools : public ToolRunner
{
public:
    void start(const ToolCommand &command) override { commands.push_back(command); }
    void stop() override { ++stops; }

    // The command that was started last has begun, and has come to its end.
    void run(int status)
    {
        Q_EMIT started();
        end(status);
    }
    void end(int status) { Q_EMIT ended({ ToolEnd::Kind::Exited, status, {} }); }

    std::vector<ToolCommand> commands;
    int stops = 0;
};

// A bundle with one personality, "Test", that has every tool.
inline FilesystemBundle testBundle()
{
    Personality personality;
    personality.key = QStringLiteral("Test");
    personality.format = BundleTool { QStringLiteral("format"), {} };
    personality.verification = BundleTool { QStringLiteral("verify"), {} };
    personality.repair = BundleTool { QStringLiteral("repair"), {} };
    FilesystemBundle bundle;
    bundle.path = QStringLiteral("/bundles/testfs.fs");
    bundle.name = QStringLiteral("testfs");
    bundle.personalities = { personality };
    bundle.linuxTypes = { QStringLiteral("testfs") };
    return bundle;
}
