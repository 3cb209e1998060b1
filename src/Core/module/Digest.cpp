#include "Core/DigestModule.h"

#include <array>
#include <openssl/evp.h>
#include <stdexcept>

namespace vh {

namespace {

class EvpEngine : public ContentHash::Engine {
public:
    explicit EvpEngine(const EVP_MD* kind) : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
        if (EVP_DigestInit_ex(context_.get(), kind, nullptr) != 1)
            throw std::runtime_error("The hash cannot be counted on this computer");
    }
    void update(std::string_view bytes) override {
        EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size());
    }
    std::string hex() override {
        std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
        unsigned size = 0;
        EVP_DigestFinal_ex(context_.get(), digest.data(), &size);
        std::string text;
        constexpr std::string_view digits = "0123456789abcdef";
        for (unsigned i = 0; i < size; ++i) {
            text += digits[digest[i] >> 4];
            text += digits[digest[i] & 15];
        }
        return text;
    }

private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
};

std::unique_ptr<ContentHash::Engine> openEngine(HashAlgorithm algorithm) {
    switch (algorithm) {
    case HashAlgorithm::sha256:
        return std::make_unique<EvpEngine>(EVP_sha256());
    case HashAlgorithm::md5:
        return std::make_unique<EvpEngine>(EVP_md5());
    default:
        return nullptr;
    }
}

} // namespace

} // namespace vh

extern "C" void* vhModule() {
    static vh::DigestModule module{vh::openEngine};
    return &module;
}
