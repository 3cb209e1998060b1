#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Console.h"

#include <exception>

int main(int argc, char** argv) {
    try {
        vh::app::Session session;
        return static_cast<int>(vh::cli::CommandLine(session).run(argc, argv));
    } catch (const std::exception& error) {
        vh::cli::complain(error.what());
        return static_cast<int>(vh::cli::Exit::failed);
    }
}
