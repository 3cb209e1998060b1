#include "Core/ContentHash.h"
#include "Core/Printable.h"
#include "Platform/SystemError.h"
#include "Platform/Terminal.h"
#include "Tools/FastCopy/SumsText.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"

namespace vh {

namespace cli {

/// What a file hashes to.
struct HashReply {
    std::string path;
    HashAlgorithm algorithm = HashAlgorithm::sha256;
    std::string hash; ///< lower-case hexadecimal
};

} // namespace cli

template <>
inline constexpr auto describe<cli::HashReply> = record(field("path", &cli::HashReply::path),
                                                        field("algorithm", &cli::HashReply::algorithm),
                                                        field("hash", &cli::HashReply::hash));

} // namespace vh

namespace vh::cli {

namespace {

struct HashWords {
    std::vector<std::string> files;
    std::string algorithm = "sha256";
};

/// On a terminal for people, elsewhere as a list that can be checked.
std::string lineOf(const HashReply& reply) {
    return isTerminal(StandardStream::output) ? reply.hash + "  " + printable(reply.path) + "\n"
                                              : copy::sumLine(reply.algorithm, reply.hash, reply.path);
}

Exit hashFiles(Context& context, const HashWords& words) {
    const HashAlgorithm algorithm = *fromRaw<HashAlgorithm>(words.algorithm);
    std::vector<HashReply> replies;
    Exit exit = Exit::done;
    for (const std::string& file : words.files)
        try {
            replies.push_back({file, algorithm, hashOfFile(file, algorithm, context.cancel)});
            if (context.format == Format::people)
                print(lineOf(replies.back()));
        } catch (const SystemError& error) {
            complain(printable(error.what()));
            exit = Exit::failed;
        } catch (const Cancelled&) {
            exit = Exit::cancelled;
            break;
        }
    if (context.format == Format::json)
        printJson(replies);
    return exit;
}

} // namespace

void describeHash(Verb& noun, CommandLine& line) {
    const auto words = std::make_shared<HashWords>();
    noun.argument("FILE", &words->files, line.text("cli.hash.file")).required();
    noun.option("--algorithm", &words->algorithm, line.text("cli.copy.algorithm"))
        .oneOf({"sha256", "xxhash64", "md5"});
    line.on(noun, [words](Context& context) { return hashFiles(context, *words); });
    noun.example("varnholt hash film.mov --algorithm xxhash64");
}

} // namespace vh::cli
