#include "support/BackgroundProgram.h"

#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <future>
#include <utility>

namespace vh::test {

BackgroundProgram::BackgroundProgram(std::vector<std::string> arguments) {
    const std::string name = arguments.front();
    auto said = std::make_shared<std::promise<std::string>>();
    auto line = said->get_future();
    thread_ = std::thread([said, cancel = cancel_, arguments = std::move(arguments)] {
        ProcessRequest request{arguments};
        bool isSaid = false;
        request.onOutput = [&, text = std::string()](std::string_view piece) mutable {
            text += piece;
            if (const size_t end = text.find('\n'); end != std::string::npos && !std::exchange(isSaid, true))
                said->set_value(text.substr(0, end));
        };
        std::string errors = "it ended";
        try {
            errors = runProcess(request, cancel).errors;
        } catch (const SystemError& error) {
            errors = error.what();
        }
        if (!isSaid)
            said->set_exception(std::make_exception_ptr(std::runtime_error(errors)));
    });
    try {
        if (line.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
            throw std::runtime_error("it says nothing");
        firstLine_ = line.get();
    } catch (const std::runtime_error& error) {
        stop();
        throw std::runtime_error(name + ": " + error.what());
    }
}

void BackgroundProgram::stop() {
    cancel_.cancel();
    if (thread_.joinable())
        thread_.join();
}

} // namespace vh::test
