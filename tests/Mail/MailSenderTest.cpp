#include "Mail/MailSender.h"

#include "Core/Base64.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunLog.h"
#include "Core/Secrets.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "Mail/MailHeaders.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "support/BackgroundProgram.h"
#include "support/PrivateBus.h"

#include <gmock/gmock.h>
#include <numeric>

namespace vh {

namespace mail {

/// What tests/Mail/smtp-server writes down of a mail.
struct ReceivedMail {
    std::string sender, from, to, subject, body;
    std::vector<std::string> recipients;
    std::map<std::string, Bytes> attachments;
    int longestLine = 0;
    bool isAscii = false;
};

} // namespace mail

template <>
inline constexpr auto describe<mail::ReceivedMail> = record(
    field("sender", &mail::ReceivedMail::sender), field("from", &mail::ReceivedMail::from),
    field("to", &mail::ReceivedMail::to), field("subject", &mail::ReceivedMail::subject),
    field("body", &mail::ReceivedMail::body), field("recipients", &mail::ReceivedMail::recipients),
    field("attachments", &mail::ReceivedMail::attachments),
    field("longestLine", &mail::ReceivedMail::longestLine), field("isAscii", &mail::ReceivedMail::isAscii));

} // namespace vh

namespace vh::mail {
namespace {

using testing::HasSubstr;

/// A certificate of the test's own, made once.
class Certificate {
public:
    static const Certificate& get() {
        static const Certificate certificate;
        return certificate;
    }
    std::string file() const { return folder_ / "cert.pem"; }
    std::string key() const { return folder_ / "key.pem"; }

private:
    Certificate() {
        const auto made =
            runProcess({{"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                         "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1",
                         "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key(), "-out", file()}});
        if (!made.succeeded())
            throw std::runtime_error(made.errors);
    }
    test::TempDir folder_;
};

class SmtpServer {
public:
    explicit SmtpServer(const std::string& mode)
        : program_({"/usr/bin/python3", VH_SOURCE_DIR "/tests/Mail/smtp-server", mode,
                    Certificate::get().file(), Certificate::get().key(), folder_.path()}) {}
    int port() const { return std::stoi(program_.firstLine()); }
    std::optional<ReceivedMail> received() const {
        const auto text = readFileIfPresent(folder_ / "0.json");
        return text ? std::optional(decodeJson<ReceivedMail>(*text)) : std::nullopt;
    }

private:
    test::TempDir folder_;
    test::BackgroundProgram program_;
};

/// A person with a log, settings and secrets, all in a folder of the test's.
class MailSenderTest : public testing::Test {
public:
    MailSenderTest() {
        defaults_.set(DatabaseLocation::key, folder_ / "data");
        defaults_.set("mail.ca-file", Certificate::get().file());
        secrets_->set(passwordName, "Mail", "correct horse");
    }

    void use(int port, MailSecurity security) {
        settings_.port = port;
        settings_.security = security;
        settings_.store(defaults_);
    }

    static MailMessage message() {
        return {.recipients = {"eva@example.org"}, .subject = "Hi", .body = "Text\n"};
    }

    const test::NoBus bus_;
    test::TempDir folder_;
    UserDefaults defaults_{folder_ / "defaults.json"};
    RunFiles files_{defaults_};
    RunLog log_{defaults_, files_};
    std::unique_ptr<SecretStore> secrets_ = openSecretStore(folder_ / "secrets.json");
    MailSettings settings_{
        .host = "127.0.0.1", .user = "ana", .sender = "ana@example.org", .senderName = "Ana Ñ."};
    MailSender sender_{defaults_, *secrets_, log_, [] { return Texts(Language::en); },
                       std::chrono::seconds(2)};
};

Bytes allBytes() {
    Bytes bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = std::byte(i * 7);
    return bytes;
}

TEST_F(MailSenderTest, AMailArrivesAsItWasWritten) {
    const Bytes bytes = allBytes();
    const std::string raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const MailMessage message{
        .recipients = {"eva@example.org", "joe@example.org"},
        .subject = "Informe — año nuevo ✓ de todas las copias, con un asunto que no cabe en una línea",
        .body = "Hola:\n.\n..two\n.from\n\n" + std::string(3000, 'x') + "\nñandú =3D \n",
        .attachments = {{"informe ñ.csv", "text/csv", raw}, {"a \"b\".pdf", "application/pdf", "%PDF"}}};
    for (const auto& [mode, security] :
         {std::pair{"starttls", MailSecurity::starttls}, std::pair{"tls", MailSecurity::tls}}) {
        const SmtpServer server(mode);
        use(server.port(), security);
        const RunRecord record = sender_.send(message, Trigger::flow);
        ASSERT_EQ(record.outcome, Outcome::success) << mode << ": " << record.summary;
        EXPECT_EQ(record.summary, "Sent to eva@example.org, joe@example.org.");
        EXPECT_EQ(log_.last("send-email")->id, record.id);
        const auto mail = server.received();
        ASSERT_TRUE(mail) << mode;
        EXPECT_EQ(mail->sender, "ana@example.org");
        EXPECT_EQ(mail->recipients, message.recipients);
        EXPECT_EQ(mail->to, "eva@example.org, joe@example.org");
        EXPECT_EQ(mail->from, "\"Ana Ñ.\" <ana@example.org>");
        EXPECT_EQ(mail->subject, message.subject);
        EXPECT_EQ(mail->body, message.body);
        EXPECT_EQ(mail->attachments.at("informe ñ.csv"), bytes);
        EXPECT_EQ(mail->attachments.at("a \"b\".pdf").size(), 4u);
        EXPECT_LE(mail->longestLine, 998) << "a relay may break the line";
        EXPECT_TRUE(mail->isAscii);
    }
}

TEST_F(MailSenderTest, WhatCannotBeSentIsSaidAndRecorded) {
    const struct {
        const char* mode;
        MailSecurity security;
        void (*spoil)(MailSenderTest& self, MailMessage& message);
        const char* reason;
    } cases[]{
        {"tls", MailSecurity::tls,
         [](auto& self, auto&) { self.secrets_->set(passwordName, "Mail", "wrong"); },
         "refused the user name or the password (535"},
        {"starttls", MailSecurity::starttls,
         [](auto&, auto& message) { message.recipients.push_back("nobody@example.org"); },
         "refused the mail (550 5.1.1 no such user here)"},
        {"tls", MailSecurity::tls, [](auto& self, auto&) { self.defaults_.remove("mail.ca-file"); },
         "is not trusted"},
        {"plain", MailSecurity::starttls, [](auto&, auto&) {}, "never sent without one"},
        {"silent", MailSecurity::starttls, [](auto&, auto&) {}, "does not answer"},
        {"drop", MailSecurity::tls,
         [](auto& self, auto& message) {
             self.settings_.user.clear();
             message.body.assign(4 << 20, 'x');
         },
         "broke before it confirmed"},
        {"tls", MailSecurity::tls, [](auto& self, auto&) { self.secrets_->remove(passwordName); },
         "the password of ana"},
    };
    for (const auto& each : cases) {
        const SmtpServer server(each.mode);
        MailMessage message = this->message();
        defaults_.set("mail.ca-file", Certificate::get().file());
        secrets_->set(passwordName, "Mail", "correct horse");
        settings_.user = "ana";
        each.spoil(*this, message);
        use(server.port(), each.security);
        const RunRecord record = sender_.send(message, Trigger::manual);
        EXPECT_EQ(record.outcome, Outcome::failed) << each.mode;
        EXPECT_THAT(record.summary, HasSubstr(each.reason)) << each.mode;
        EXPECT_EQ(log_.last("send-email")->id, record.id);
        EXPECT_FALSE(server.received()) << each.mode;
    }
    secrets_->set(passwordName, "Mail", "correct horse");
    use(1, MailSecurity::tls);
    EXPECT_THAT(sender_.send(message(), Trigger::manual).summary, HasSubstr("cannot be reached"));
}

TEST_F(MailSenderTest, NothingCanBeSmuggledIntoTheHeaders) {
    use(1, MailSecurity::tls);
    void (*const spoils[])(MailMessage&){
        [](auto& message) { message.subject = "Hi\r\nBcc: eve@example.org"; },
        [](auto& message) { message.recipients = {"a@example.org\r\nRCPT TO:<eve@example.org>"}; },
        [](auto& message) { message.recipients = {"a@example.org>, <eve@example.org"}; },
        [](auto& message) {
            message.attachments = {{"a\nb", "text/plain", ""}};
        },
        [](auto& message) {
            message.attachments = {{"a", "text/plain\r\nX: y", ""}};
        },
        [](auto& message) { message.recipients.clear(); },
    };
    for (const auto& spoil : spoils) {
        MailMessage spoiled = message();
        spoil(spoiled);
        const RunRecord record = sender_.send(spoiled, Trigger::manual);
        EXPECT_EQ(record.outcome, Outcome::failed);
        EXPECT_THAT(record.summary, testing::Not(HasSubstr("reached"))) << "a server was asked";
    }
}

TEST_F(MailSenderTest, AWaitCanBeCancelled) {
    const SmtpServer server("silent");
    use(server.port(), MailSecurity::tls);
    const MailSender patient(defaults_, *secrets_, log_, [] { return Texts(Language::en); });
    const CancelToken cancel;
    const auto begin = std::chrono::steady_clock::now();
    std::thread canceller([&] { cancel.cancel(); });
    EXPECT_EQ(patient.send(message(), Trigger::manual, cancel).outcome, Outcome::cancelled);
    canceller.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(MailHeaders, TextIsEncodedInWordsOfWholeCharacters) {
    EXPECT_EQ(headerText("Plain, 100 % of it"), "Plain, 100 % of it");
    EXPECT_EQ(headerText("=?x"), "=?UTF-8?B?PT94?=") << "it would be read as an encoded word";
    std::string text;
    for (int i = 0; i < 60; ++i)
        text += "ñ✓";
    const std::string encoded = headerText(text);
    for (size_t start = 0; start < encoded.size();) {
        const size_t end = std::min(encoded.find("\r\n ", start), encoded.size());
        const std::string word = encoded.substr(start, end - start);
        EXPECT_LE(word.size(), 75u);
        const auto bytes = parseBase64(word.substr(10, word.size() - 12));
        ASSERT_TRUE(bytes) << word;
        EXPECT_NE(std::to_integer<int>(bytes->front()) & 0xC0, 0x80) << "a character was cut in two";
        start = end + 3;
    }
    EXPECT_EQ(withMailLineEnds("a\nb\r\nc\rd"), "a\r\nb\r\nc\r\nd");
}

} // namespace
} // namespace vh::mail
