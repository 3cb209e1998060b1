#pragma once

/// What each noun's file offers to the table in Commands.cpp.
namespace vh::cli {

class CommandLine;
class Verb;

void describeCompletions(Verb& noun, CommandLine& line);
void describeCopy(Verb& noun, CommandLine& line);
void describeFlow(Verb& noun, CommandLine& line);
void describeFollowUps(Verb& noun, CommandLine& line);
void describeHash(Verb& noun, CommandLine& line);
void describeHelper(Verb& noun, CommandLine& line);
void describeJunk(Verb& noun, CommandLine& line);
void describeMail(Verb& noun, CommandLine& line);
void describeMaintenance(Verb& noun, CommandLine& line);
void describeOpen(Verb& noun, CommandLine& line);
void describeOptimize(Verb& noun, CommandLine& line);
void describeOverview(Verb& noun, CommandLine& line);
void describeRuns(Verb& noun, CommandLine& line);
void describeSchedule(Verb& noun, CommandLine& line);
void describeScript(Verb& noun, CommandLine& line);
void describeServe(Verb& noun, CommandLine& line);
void describeSync(Verb& noun, CommandLine& line);
void describeTools(Verb& noun, CommandLine& line);

} // namespace vh::cli
