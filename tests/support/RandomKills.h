#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace vh::test {

/// Runs `work` in child processes, one after the other and each where the one before left off, until so many of them were
/// killed, each at a random moment of the time that the work takes after `setUp`. `check` runs in this process after each
/// kill. Every fifth time, and at the end, `finish` is to bring it to its end here, and `setUp` begins anew. There must be
/// no thread beside the caller's.
struct RandomKills {
    int kills = 200;
    unsigned seed = 1;
    std::function<void()> setUp, work, check, finish;
    void run() const;
};

using Tree = std::map<std::string, std::string>; ///< of treeOf

/// Every file holds what it had or what it shall have, nothing that shall stay is gone, and whatever else is there is a
/// partial file that ends in `suffix`.
void expectOldOrNew(const Tree& now, const Tree& old, const Tree& finally, std::string_view suffix);

/// `finally` and nothing else; names what differs without its contents.
void expectSame(const Tree& now, const Tree& finally);

} // namespace vh::test
