// What the program and the page agent say to each other.
//
// Events go from the agent to the program as messages of the web engine; a message's parameter is
// one packed text. Requests and answers go over a stream socket: a header of fixed size, then the
// body. The program trusts nothing that it gets: see Reader and kLongestAnswer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::wire {

// Events. Every packed text starts with the agent's number, the frame's and the document's.
inline constexpr char kHello[] = "velmora.hello";  ///< Asks for a channel; the reply carries one end of it.
inline constexpr char kBegun[] = "velmora.begun";  ///< A new document: address, top.
/// Address, top; the number and the handles of the forms that have come to a document which had finished.
inline constexpr char kFinished[] = "velmora.finished";
/// Address, method, target, the body (empty if the method is not "post"), how often the user has pressed
/// a key or a button in the document, whether the program has not been told of the form, the document's
/// address, and the handle of the form.
inline constexpr char kFormData[] = "velmora.formdata";
inline constexpr char kLink[] = "velmora.link";  ///< Address, target, whether it leads into the same document.
/// As kFormData without the handle, but sent by the page's script; then the time of the submission
/// (milliseconds since 1970), and the facts of the form and its elements at that time.
inline constexpr char kSubmitted[] = "velmora.submitted";
inline constexpr char kError[] = "velmora.error";  ///< A fault in the agent's own script.

/// From the program to the page: the address that is shown has changed, perhaps within the document.
inline constexpr char kMoved[] = "velmora.moved";

/// The name of an event in the agent's script and in the list above.
inline constexpr char kEventPrefix[] = "velmora.";

/// A document: the number of its frame, and a number of its own that nobody can guess.
struct DocumentName {
    std::uint64_t frame = 0;
    std::uint64_t number = 0;

    bool operator==(const DocumentName&) const = default;
};

struct RequestHeader {
    std::uint32_t bodyBytes;
    std::uint32_t operation;
    DocumentName document;  ///< Another one in its frame refuses: the page is gone.
};

enum Operation : std::uint32_t {
    kRead = 0,  ///< Body: a packed text for the script; the answer is packed.
    /// A row of writes, at which the page's own handlers run. Body: the revision that the program knows; of each write
    /// the number of its texts, and these. The answer is how many were done: at least one, and none of those behind one
    /// that changed the structure.
    kWrite = 1,
    kClick = 2,  ///< Body: a handle. Answered at once; the click follows.
    kDone = 3,   ///< No body, no answer: the program has handled the event, and nothing follows.
};

enum Outcome : std::uint32_t {
    kServed = 0,
    kRefused = 1,  ///< The body says why.
};

struct AnswerHeader {
    std::uint32_t bodyBytes;
    std::uint32_t outcome;   ///< An Outcome.
    std::uint64_t revision;  ///< How often the structure of the frame's forms has changed.
};

/// No request is longer, no answer and no event, in bytes.
inline constexpr std::uint32_t kLongestRequest = 64U << 20;
inline constexpr std::uint32_t kLongestAnswer = 4U << 20;
inline constexpr std::uint32_t kLongestEvent = 16U << 20;

/// Texts joined by line feeds, with "\", line feed and zero escaped: never a zero byte inside.
inline void AppendPacked(std::string& packed, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '\\': packed += "\\\\"; break;
        case '\n': packed += "\\n"; break;
        case '\0': packed += "\\0"; break;
        default: packed += c;
        }
    }
}

inline std::string Pack(const std::vector<std::string>& texts)
{
    std::string packed;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i > 0) packed += '\n';
        AppendPacked(packed, texts[i]);
    }
    return packed;
}

class WireError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a packed text from its first part to its last. What is missing, malformed or left over throws
/// WireError: the two ends must know the same fields of a message.
class Reader {
public:
    explicit Reader(std::string_view packed) : rest_(packed) {}

    std::string Text()
    {
        if (ended_) throw WireError("a text is missing");
        const std::size_t end = rest_.find('\n');
        const std::string_view part = rest_.substr(0, end);
        ended_ = end == std::string_view::npos;
        rest_.remove_prefix(ended_ ? rest_.size() : end + 1);
        return Unescape(part);
    }

    std::uint64_t Number()
    {
        const std::string text = Text();
        // 19 digits always fit.
        if (text.empty() || text.size() > 19) throw WireError("a number is missing");
        std::uint64_t number = 0;
        for (const char c : text) {
            if (c < '0' || c > '9') throw WireError("a number is malformed");
            number = number * 10 + static_cast<std::uint64_t>(c - '0');
        }
        return number;
    }

    bool Flag() { return Number() != 0; }

    /// Reads several fields in their order.
    template <class... Fields>
    void Read(Fields&... fields)
    {
        (Take(fields), ...);
    }

    /// To be called after the last part.
    void End() const
    {
        if (!ended_) throw WireError("there is more than was expected");
    }

private:
    void Take(std::string& text) { text = Text(); }
    void Take(std::uint64_t& number) { number = Number(); }
    void Take(bool& flag) { flag = Flag(); }

    static std::string Unescape(std::string_view part)
    {
        if (part.find('\\') == std::string_view::npos) return std::string(part);
        std::string text;
        for (std::size_t i = 0; i < part.size(); ++i) {
            if (part[i] != '\\' || i + 1 == part.size()) {
                text += part[i];
                continue;
            }
            const char c = part[++i];
            text += c == 'n' ? '\n' : c == '0' ? '\0' : c;
        }
        return text;
    }

    std::string_view rest_;
    bool ended_ = false;
};

}  // namespace velmora::wire
