#include "Mail/MailTransport.h"

#include <curl/curl.h>
#include <fmt/format.h>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace vh::mail {

namespace {

struct CurlCloser {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_mime* mime) const { curl_mime_free(mime); }
};
using Handle = std::unique_ptr<CURL, CurlCloser>;
using Mime = std::unique_ptr<curl_mime, CurlCloser>;

class TextList {
public:
    ~TextList() { curl_slist_free_all(list_); }
    void add(const std::string& text) {
        curl_slist* const longer = curl_slist_append(list_, text.c_str());
        if (longer == nullptr)
            throw std::bad_alloc();
        list_ = longer;
    }
    curl_slist* get() const { return list_; }
    curl_slist* release() { return std::exchange(list_, nullptr); }

private:
    curl_slist* list_ = nullptr;
};

/// What the callbacks see and note.
struct Conversation {
    const CancelToken& cancel;
    std::string lastReply; ///< the server's
};

size_t noteReply(char* bytes, size_t size, size_t count, void* conversation) {
    std::string_view line(bytes, size * count);
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    // A goodbye says nothing of why.
    if (!line.starts_with("221"))
        static_cast<Conversation*>(conversation)->lastReply = line;
    return size * count;
}

int stopIfCancelled(void* conversation, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<Conversation*>(conversation)->cancel.isCancelled() ? 1 : 0;
}

void check(CURLcode code) {
    if (code != CURLE_OK)
        throw MailError(MailFault::other, curl_easy_strerror(code));
}

Mime mimeOf(CURL* handle, const MailTransfer& transfer) {
    Mime mime(curl_mime_init(handle));
    curl_mimepart* const body = curl_mime_addpart(mime.get());
    check(curl_mime_data(body, transfer.body.data(), transfer.body.size()));
    check(curl_mime_type(body, "text/plain; charset=utf-8"));
    check(curl_mime_encoder(body, "quoted-printable"));
    for (const auto& attachment : transfer.attachments) {
        curl_mimepart* const part = curl_mime_addpart(mime.get());
        check(curl_mime_data(part, attachment.bytes.data(), attachment.bytes.size()));
        check(curl_mime_type(part, attachment.type.c_str()));
        check(curl_mime_encoder(part, "base64"));
        TextList headers;
        headers.add(attachment.disposition);
        check(curl_mime_headers(part, headers.release(), 1));
    }
    return mime;
}

template <class Value>
void set(CURL* handle, CURLoption option, Value value) {
    check(curl_easy_setopt(handle, option, value));
}

void prepare(CURL* handle, const MailTransfer& transfer, Conversation& conversation) {
    const MailSettings& settings = transfer.settings;
    const char* const scheme = settings.security == MailSecurity::tls ? "smtps" : "smtp";
    set(handle, CURLOPT_URL, fmt::format("{}://{}:{}", scheme, settings.host, settings.port).c_str());
    set(handle, CURLOPT_USE_SSL, long(CURLUSESSL_ALL));
    set(handle, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    if (!transfer.caFile.empty())
        set(handle, CURLOPT_CAINFO, transfer.caFile.c_str());
    if (!settings.user.empty()) {
        set(handle, CURLOPT_USERNAME, settings.user.c_str());
        set(handle, CURLOPT_PASSWORD, transfer.password.c_str());
    }
    const auto silence = static_cast<long>(transfer.silence.count());
    set(handle, CURLOPT_CONNECTTIMEOUT, silence);
    set(handle, CURLOPT_SERVER_RESPONSE_TIMEOUT, silence);
    set(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(handle, CURLOPT_LOW_SPEED_TIME, silence);
    set(handle, CURLOPT_NOSIGNAL, 1L);
    set(handle, CURLOPT_NOPROGRESS, 0L);
    set(handle, CURLOPT_XFERINFODATA, &conversation);
    set(handle, CURLOPT_XFERINFOFUNCTION, stopIfCancelled);
    set(handle, CURLOPT_HEADERDATA, &conversation);
    set(handle, CURLOPT_HEADERFUNCTION, noteReply);
    set(handle, CURLOPT_MAIL_FROM, fmt::format("<{}>", settings.sender).c_str());
}

/// `reply` is what the server said last.
MailFault faultOf(CURLcode code, std::string_view reply) {
    const bool isUnderWay = reply.starts_with("354");
    const bool isRefusal = reply.starts_with('4') || reply.starts_with('5');
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_URL_MALFORMAT:
        return MailFault::unreachable;
    case CURLE_OPERATION_TIMEDOUT:
        return isUnderWay ? MailFault::unconfirmed : MailFault::silent;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
        return isUnderWay ? MailFault::unconfirmed : isRefusal ? MailFault::refused : MailFault::lost;
    case CURLE_USE_SSL_FAILED:
        return MailFault::plain;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
        return MailFault::certificate;
    case CURLE_LOGIN_DENIED:
        return MailFault::login;
    default:
        return MailFault::refused;
    }
}

void send(const MailTransfer& transfer, const CancelToken& cancel) {
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    check(started);
    const Handle handle(curl_easy_init());
    Conversation conversation{cancel, {}};
    char details[CURL_ERROR_SIZE] = {};
    prepare(handle.get(), transfer, conversation);
    set(handle.get(), CURLOPT_ERRORBUFFER, details);
    TextList recipients, headers;
    for (const std::string& each : transfer.recipients)
        recipients.add(fmt::format("<{}>", each));
    for (const std::string& each : transfer.headers)
        headers.add(each);
    set(handle.get(), CURLOPT_MAIL_RCPT, recipients.get());
    set(handle.get(), CURLOPT_HTTPHEADER, headers.get());
    const Mime mime = mimeOf(handle.get(), transfer);
    set(handle.get(), CURLOPT_MIMEPOST, mime.get());

    const CURLcode code = curl_easy_perform(handle.get());
    if (code == CURLE_OK)
        return;
    if (code == CURLE_ABORTED_BY_CALLBACK)
        throw Cancelled();
    const std::string_view reply = conversation.lastReply;
    const MailFault fault = faultOf(code, reply);
    const bool isReplyTheReason =
        (fault == MailFault::login || fault == MailFault::refused) && !reply.empty();
    throw MailError(fault, isReplyTheReason     ? std::string(reply)
                           : details[0] != '\0' ? details
                                                : curl_easy_strerror(code));
}

} // namespace

} // namespace vh::mail

extern "C" void* vhModule() {
    static vh::mail::MailModule module{vh::mail::send};
    return &module;
}
