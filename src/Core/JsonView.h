#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vh {

/// JSON that cannot be read as what was asked for. what() reads "<place>: <reason>", such as
/// "nodes[3].kind: Invalid number of keys found, expected one."
class DecodeError : public std::runtime_error {
public:
    explicit DecodeError(std::string reason);
    /// Adds the key or "[index]" that leads to where the error arose.
    void within(std::string_view step);

    const char* what() const noexcept override { return text_.c_str(); }
    const std::string& place() const { return place_; }
    const std::string& reason() const { return reason_; }

private:
    std::string place_;
    std::string reason_;
    std::string text_;
};

enum class JsonKind { null, boolean, number, text, array, object };

/// One value of a parsed JSON document, read in place; valid as long as the document is.
class JsonView {
public:
    JsonKind kind() const;
    bool isNull() const { return kind() == JsonKind::null; }

    /// Each gives nothing when the value is of another kind or does not fit.
    std::optional<bool> boolean() const;
    std::optional<int64_t> integer() const;
    std::optional<uint64_t> unsignedInteger() const;
    std::optional<double> number() const;
    std::optional<std::string_view> text() const;

    /// Elements of an array or members of an object, else 0.
    size_t size() const;
    /// The member called `key`; nothing for a missing one and for what is no object.
    std::optional<JsonView> find(std::string_view key) const;
    void forEachElement(const std::function<void(size_t index, JsonView)>& visit) const;
    void forEachMember(const std::function<void(std::string_view key, JsonView)>& visit) const;

private:
    friend class JsonDocument;
    struct Place { // the parser's own handle, kept opaque so that its header stays in one file
        const void* document = nullptr;
        size_t index = 0;
    };
    explicit JsonView(Place place) : place_(place) {}
    Place place_;
};

/// A parser and the document it read last. Reading many texts with one object spares allocations.
class JsonDocument {
public:
    static constexpr size_t usualDepth = 1024;
    explicit JsonDocument(size_t mostDepth = usualDepth);
    ~JsonDocument();

    /// Throws DecodeError, also for values that lie deeper one in the other. The view, and all views before it, end with the next parse.
    JsonView parse(std::string_view text);

private:
    struct Parser;
    std::unique_ptr<Parser> parser_;
};

} // namespace vh
