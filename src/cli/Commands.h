#pragma once

namespace CLI {
class App;
}

/// What each noun's file offers to the table in Commands.cpp.
namespace vh::cli {

class CommandLine;

void describeCopy(CLI::App& noun, CommandLine& line);
void describeFlow(CLI::App& noun, CommandLine& line);
void describeFollowUps(CLI::App& noun, CommandLine& line);
void describeHash(CLI::App& noun, CommandLine& line);
void describeHelper(CLI::App& noun, CommandLine& line);
void describeJunk(CLI::App& noun, CommandLine& line);
void describeMail(CLI::App& noun, CommandLine& line);
void describeMaintenance(CLI::App& noun, CommandLine& line);
void describeOpen(CLI::App& noun, CommandLine& line);
void describeOptimize(CLI::App& noun, CommandLine& line);
void describeOverview(CLI::App& noun, CommandLine& line);
void describeRuns(CLI::App& noun, CommandLine& line);
void describeSchedule(CLI::App& noun, CommandLine& line);
void describeScript(CLI::App& noun, CommandLine& line);
void describeServe(CLI::App& noun, CommandLine& line);
void describeSync(CLI::App& noun, CommandLine& line);
void describeTools(CLI::App& noun, CommandLine& line);

} // namespace vh::cli
