#include "Core/XmlText.h"

#include "Core/ValidText.h"

#include <algorithm>
#include <exception>
#include <expat.h>
#include <fmt/format.h>
#include <memory>
#include <type_traits>

namespace vh {

namespace {

constexpr size_t deepest = 100;
/// The parser takes a number of type int.
constexpr size_t pieceBytes = 1u << 20;

/// Between the parser's calls and the handler; what is thrown waits until the parser, which is C, has returned.
class Reading {
public:
    explicit Reading(XmlHandler& handler)
        : handler_(handler), parser_(XML_ParserCreate("UTF-8"), XML_ParserFree) {
        if (!parser_)
            throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* reading, const XML_Char* name, const XML_Char** attributes) {
                static_cast<Reading*>(reading)->start(name, attributes);
            },
            [](void* reading, const XML_Char* name) { static_cast<Reading*>(reading)->end(name); });
        XML_SetCharacterDataHandler(parser_.get(), [](void* reading, const XML_Char* text, int length) {
            auto* self = static_cast<Reading*>(reading);
            self->guarded([&] { self->handler_.text({text, static_cast<size_t>(length)}); });
        });
        XML_SetStartDoctypeDeclHandler(
            parser_.get(), [](void* reading, const XML_Char*, const XML_Char*, const XML_Char*, int) {
                auto* self = static_cast<Reading*>(reading);
                self->guarded([&] { self->refuse("document types are not read"); });
            });
    }

    void read(std::string_view text) {
        do {
            const std::string_view piece = text.substr(0, pieceBytes);
            text.remove_prefix(piece.size());
            const auto status = XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()),
                                          text.empty() ? XML_TRUE : XML_FALSE);
            if (thrown_)
                std::rethrow_exception(thrown_);
            if (status != XML_STATUS_OK)
                refuse(XML_ErrorString(XML_GetErrorCode(parser_.get())));
        } while (!text.empty());
    }

private:
    size_t line() const { return XML_GetCurrentLineNumber(parser_.get()); }
    [[noreturn]] void refuse(const char* why) const { throw XmlError(line(), why); }

    template <class Work>
    void guarded(Work work) {
        if (thrown_)
            return;
        try {
            work();
        } catch (...) {
            thrown_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }
    void start(const XML_Char* name, const XML_Char** attributes) {
        guarded([&] {
            if (++depth_ > deepest)
                refuse("elements lie too deep in one another");
            XmlHandler::Attributes given;
            for (; *attributes; attributes += 2)
                given.emplace(attributes[0], attributes[1]);
            handler_.start(name, given, line());
        });
    }
    void end(const XML_Char* name) {
        guarded([&] {
            --depth_;
            handler_.end(name, line());
        });
    }

    XmlHandler& handler_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser_;
    size_t depth_ = 0;
    std::exception_ptr thrown_;
};

} // namespace

void readXml(std::string_view text, XmlHandler& handler) {
    Reading(handler).read(text);
}

bool isXmlText(std::string_view text) {
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
    };
    return std::ranges::none_of(text, isControl) && text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos && validText(text) == text;
}

std::string xmlEscaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '\t':
        case '\n':
        case '\r': // as they are, a reader may make them one another
            out += fmt::format("&#{};", static_cast<int>(c));
            break;
        default:
            out += c;
        }
    return out;
}

} // namespace vh
