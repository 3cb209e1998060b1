#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
struct Folders;
class SuiteModule;
} // namespace vh

namespace vh::app {

/// The one table that turns a module identifier into a live module. Built once, then only read, from any thread.
class ModuleRegistry {
public:
    ModuleRegistry(const Folders& folders, const std::string& databaseFolder);
    ~ModuleRegistry();

    /// All modules, in the order of their cards.
    const std::vector<std::shared_ptr<SuiteModule>>& all() const { return modules_; }
    /// The module with exactly this identifier, folded ones included; nothing for an unknown one.
    std::shared_ptr<SuiteModule> module(std::string_view id) const;
    /// Another of its kind, so that work nobody watches does not change what a person is looking at; nothing without
    /// an engine that scans and cleans.
    std::shared_ptr<SuiteModule> makeModule(std::string_view id) const;

    /// False while a module is no more than its card: its tool cannot do anything yet.
    bool hasEngine(std::string_view id) const;

private:
    const Folders& folders_; ///< of the one who has the registry
    const std::string databaseFolder_;
    std::vector<std::shared_ptr<SuiteModule>> modules_;
};

} // namespace vh::app
