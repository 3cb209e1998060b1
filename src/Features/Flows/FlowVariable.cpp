#include "Features/Flows/FlowVariable.h"

#include <array>

namespace vh::flows {

namespace {

struct Names {
    FlowVariable variable;
    std::array<std::string_view, allLanguages.size()> names; ///< in the order of Language
};

constexpr Names table[] = {
    {FlowVariable::disk, {"disk", "disco", "disque"}},
    {FlowVariable::diskName, {"disk-name", "nombre-disco", "nom-disque"}},
    {FlowVariable::files, {"files", "archivos", "fichiers"}},
    {FlowVariable::folder, {"folder", "carpeta", "dossier"}},
    {FlowVariable::date, {"date", "fecha", "date"}},
    {FlowVariable::time, {"time", "hora", "heure"}},
};
constexpr size_t longestName = 12;

} // namespace

std::string_view nameOf(FlowVariable variable, Language language) {
    return table[static_cast<size_t>(variable)].names[static_cast<size_t>(language)];
}

std::optional<FlowVariable> variableNamed(std::string_view name) {
    if (name.size() > longestName)
        return std::nullopt;
    std::string lower(name);
    for (char& c : lower)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    for (const Names& row : table)
        for (const auto each : row.names)
            if (each == lower)
                return row.variable;
    return std::nullopt;
}

std::string tokenOf(FlowVariable variable, Language language) {
    return "{" + std::string(nameOf(variable, language)) + "}";
}

std::vector<FlowPiece> piecesOf(std::string_view text) {
    std::vector<FlowPiece> pieces;
    size_t done = 0;
    size_t open = text.find('{');
    while (open != std::string_view::npos) {
        // What is longer than every name is none: a text full of open braces must not be searched to its end each time.
        const size_t length = text.substr(open, longestName + 2).find('}');
        const auto variable = length == std::string_view::npos
                                  ? std::nullopt
                                  : variableNamed(text.substr(open + 1, length - 1));
        if (variable) {
            if (open > done)
                pieces.push_back({std::nullopt, std::string(text.substr(done, open - done))});
            done = open + length + 1;
            pieces.push_back({variable, std::string(text.substr(open, done - open))});
        }
        open = text.find('{', variable ? done : open + 1);
    }
    if (done < text.size())
        pieces.push_back({std::nullopt, std::string(text.substr(done))});
    return pieces;
}

std::set<FlowVariable> variablesIn(std::string_view text) {
    std::set<FlowVariable> used;
    if (text.find('{') == std::string_view::npos)
        return used;
    for (const FlowPiece& piece : piecesOf(text))
        if (piece.variable)
            used.insert(*piece.variable);
    return used;
}

} // namespace vh::flows
