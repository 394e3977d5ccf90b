// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Faults.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace directory {

namespace {

constexpr char HopFolder[] = "/_hops/";

struct Kind {
    const char *name;
    FaultKind kind;
    enum Argument { None, Number, Numbers, Text } argument;
    int low;
    int high;
};

constexpr Kind Kinds[] = {
    {"http-status", FaultKind::HttpStatus, Kind::Number, 200, 599},
    {"head-fault", FaultKind::HeadFault, Kind::Text, 0, 0},
    {"empty", FaultKind::Empty, Kind::None, 0, 0},
    {"truncated", FaultKind::Truncated, Kind::Number, 0, Faults::MaxBody},
    {"cut", FaultKind::Cut, Kind::Number, 0, Faults::MaxBody},
    {"malformed", FaultKind::Malformed, Kind::None, 0, 0},
    {"oversized", FaultKind::Oversized, Kind::Number, 1, Faults::MaxBody},
    {"slow-headers", FaultKind::SlowHeaders, Kind::Number, 0, 3600},
    {"stall", FaultKind::Stall, Kind::None, 0, 0},
    {"reset", FaultKind::Reset, Kind::None, 0, 0},
    {"trickle", FaultKind::Trickle, Kind::Number, 1, 100000000},
    {"redirect-chain", FaultKind::RedirectChain, Kind::Number, 1, 100},
    {"redirect-loop", FaultKind::RedirectLoop, Kind::None, 0, 0},
    {"body", FaultKind::Body, Kind::Text, 0, 0},
    {"retry-after", FaultKind::RetryAfter, Kind::Number, 0, 3600},
    {"login-page", FaultKind::LoginPage, Kind::None, 0, 0},
    {"down", FaultKind::Down, Kind::Number, 1, 3600},
    {"stream-close", FaultKind::StreamClose, Kind::Number, 0, 3600},
    {"stream-reset", FaultKind::StreamReset, Kind::Number, 0, 3600},
    {"stream-stall", FaultKind::StreamStall, Kind::Number, 0, 3600},
    {"stream-garbage", FaultKind::StreamGarbage, Kind::Numbers, 0, 3600},
};

/// Cuts "*3" off the end; -1 when there is none, 0 when it is no count.
int takeCount(std::string &text)
{
    const std::size_t star = text.rfind('*');
    if (star == std::string::npos
        || text.find_first_not_of("0123456789", star + 1) != std::string::npos
        || star + 1 == text.size())
        return -1;
    const int count = parseNumber(std::string_view(text).substr(star + 1));
    text.erase(star);
    return std::max(count, 0);
}

bool expired(const Fault &fault)
{
    return fault.kind == FaultKind::Down && fault.until <= std::chrono::steady_clock::now();
}

std::optional<Disturbance::Kind> disturbanceOf(FaultKind kind)
{
    switch (kind) {
    case FaultKind::StreamClose:
        return Disturbance::Kind::Close;
    case FaultKind::StreamReset:
        return Disturbance::Kind::Reset;
    case FaultKind::StreamStall:
        return Disturbance::Kind::Stall;
    case FaultKind::StreamGarbage:
        return Disturbance::Kind::Garbage;
    default:
        return std::nullopt;
    }
}

/// Reads "3" or "3,500" into the fault.
void readNumbers(Fault &fault)
{
    const std::size_t comma = fault.argument.find(',');
    fault.number = parseNumber(fault.argument.substr(0, comma));
    if (comma == std::string::npos)
        return;
    fault.bytes = parseNumber(fault.argument.substr(comma + 1));
    if (fault.bytes <= 0)
        fault.number = -1;
}

bool matches(const Fault &fault, const std::string &path)
{
    if (fault.path.empty())
        return true;
    if (fault.path.front() == '/')
        return lowered(path).rfind(lowered(fault.path), 0) == 0;
    const std::string page = path == "/" ? "/Browse.ashx" : path;
    return equalIgnoringCase(page, '/' + fault.path);
}

Answer htmlPage(int status)
{
    Answer answer;
    answer.status = status;
    answer.contentType = "text/html; charset=utf-8";
    const std::string number = std::to_string(status);
    answer.body = "<!DOCTYPE html>\n<html><head><title>" + number + "</title></head>\n<body><h1>"
        + number + "</h1><p>The request was not answered.</p></body></html>\n";
    return answer;
}

/// The page of a captive portal, as in hotels, which answers every request with it.
Answer loginPage()
{
    Answer answer;
    answer.contentType = "text/html; charset=utf-8";
    answer.body
        = "<!DOCTYPE html>\n<html><head><title>Welcome</title></head>\n<body><h1>Welcome</h1>"
          "<form method=\"post\" action=\"/login\"><p>Room <input name=\"room\"> "
          "<button>Go online</button></p></form></body></html>\n";
    return answer;
}

Answer headFault(const std::string &argument)
{
    std::istringstream parts(argument);
    std::string status;
    std::string code;
    std::string text;
    std::getline(parts, status, ',');
    std::getline(parts, code, ',');
    std::getline(parts, text);
    return failure(status, text, code);
}

Answer padded(Answer answer, std::size_t size)
{
    constexpr std::string_view Opening = ",\"padding\":\"";
    constexpr std::string_view Closing = "\"}";
    if (answer.body.empty() || answer.body.back() != '}')
        answer = success({});
    answer.body.pop_back();
    answer.body += Opening;
    if (answer.body.size() + Closing.size() < size)
        answer.body.append(size - answer.body.size() - Closing.size(), 'x');
    answer.body += Closing;
    return answer;
}

Answer fileBody(const std::string &file)
{
    std::ifstream in(file, std::ios::binary | std::ios::ate);
    const auto size = in ? static_cast<std::streamoff>(in.tellg()) : -1;
    if (size < 0 || size > Faults::MaxBody)
        return textAnswer(500, "The fault's file cannot be read.");
    Answer answer;
    answer.body.resize(static_cast<std::size_t>(size));
    in.seekg(0);
    in.read(answer.body.data(), size);
    return in ? answer : textAnswer(500, "The fault's file cannot be read.");
}

Answer sound200(std::string body)
{
    Answer answer;
    answer.body = std::move(body);
    return answer;
}

FaultyAnswer slowed(Answer answer, const Fault &fault)
{
    Delivery delivery;
    if (fault.kind == FaultKind::Truncated || fault.kind == FaultKind::Cut)
        delivery.bodyBytes = static_cast<std::size_t>(fault.number);
    if (fault.kind == FaultKind::SlowHeaders)
        delivery.delaySeconds = fault.number;
    if (fault.kind == FaultKind::Trickle)
        delivery.bytesPerSecond = fault.number;
    if (fault.kind == FaultKind::Stall) {
        delivery.bodyBytes = answer.body.size() / 2;
        delivery.end = Delivery::End::Hold;
    }
    return {std::move(answer), delivery};
}

} // namespace

Result<Fault, std::string> Faults::parse(const std::string &text)
{
    Fault fault;
    fault.text = text;
    fault.remaining = takeCount(fault.text);
    const std::size_t colon = fault.text.find(':');
    std::string name = fault.text.substr(0, colon);
    if (colon != std::string::npos)
        fault.argument = fault.text.substr(colon + 1);
    const std::size_t at = name.find('@');
    if (at != std::string::npos) {
        fault.path = name.substr(at + 1);
        name.erase(at);
    }
    const auto *kind = std::find_if(std::begin(Kinds), std::end(Kinds),
        [&name](const Kind &each) { return name == each.name; });
    if (kind == std::end(Kinds))
        return ::failure("there is no fault \"" + name + '"');
    fault.kind = kind->kind;
    if (kind->argument == Kind::Number)
        fault.number = parseNumber(fault.argument);
    if (kind->argument == Kind::Numbers)
        readNumbers(fault);
    const bool fits = kind->argument == Kind::None ? fault.argument.empty()
        : kind->argument == Kind::Text             ? !fault.argument.empty()
                                       : fault.number >= kind->low && fault.number <= kind->high;
    if (!fits || fault.remaining == 0 || (at != std::string::npos && fault.path.empty()))
        return ::failure("the fault \"" + text + "\" has a wrong argument, path or count");
    return fault;
}

bool Faults::add(Fault fault)
{
    if (m_faults.size() >= MaxFaults)
        m_faults.erase(std::remove_if(m_faults.begin(), m_faults.end(), expired), m_faults.end());
    if (m_faults.size() >= MaxFaults)
        return false;
    fault.until = std::chrono::steady_clock::now() + std::chrono::seconds(fault.number);
    m_faults.push_back(std::move(fault));
    return true;
}

std::vector<std::string> Faults::texts() const
{
    std::vector<std::string> list;
    for (const Fault &fault : m_faults) {
        if (!expired(fault))
            list.push_back(fault.remaining < 0
                    ? fault.text
                    : fault.text + '*' + std::to_string(fault.remaining));
    }
    return list;
}

std::optional<Fault> Faults::takeAt(std::vector<Fault>::iterator found)
{
    if (found == m_faults.end())
        return std::nullopt;
    const Fault taken = *found;
    if (found->remaining > 0 && --found->remaining == 0)
        m_faults.erase(found);
    return taken;
}

std::optional<Fault> Faults::take(const std::string &path)
{
    return takeAt(std::find_if(m_faults.begin(), m_faults.end(), [&path](const Fault &fault) {
        return fault.kind != FaultKind::Down && !disturbanceOf(fault.kind) && matches(fault, path);
    }));
}

std::optional<Disturbance> Faults::takeDisturbance(const std::string &path, std::size_t skipped)
{
    const auto start = m_faults.begin() + static_cast<std::ptrdiff_t>(std::min(skipped, size()));
    const std::optional<Fault> taken = takeAt(std::find_if(start, m_faults.end(),
        [&path](const Fault &fault) { return disturbanceOf(fault.kind) && matches(fault, path); }));
    if (!taken)
        return std::nullopt;
    return Disturbance {
        *disturbanceOf(taken->kind), taken->number, static_cast<std::size_t>(taken->bytes)};
}

bool Faults::isDown(const std::string &path) const
{
    return std::any_of(m_faults.begin(), m_faults.end(), [&path](const Fault &fault) {
        return fault.kind == FaultKind::Down && !expired(fault) && matches(fault, path);
    });
}

bool Faults::isDown() const
{
    return std::any_of(m_faults.begin(), m_faults.end(), [](const Fault &fault) {
        return fault.kind == FaultKind::Down && !expired(fault) && fault.path.empty();
    });
}

FaultyAnswer spoil(
    const Fault &fault, const std::string &target, const std::function<Answer()> &sound)
{
    switch (fault.kind) {
    case FaultKind::HttpStatus:
        return {htmlPage(fault.number), std::nullopt};
    case FaultKind::HeadFault:
        return {headFault(fault.argument), std::nullopt};
    case FaultKind::Empty:
        return {sound200({}), std::nullopt};
    case FaultKind::Cut: {
        Answer answer = sound();
        if (answer.audio)
            return slowed(std::move(answer), fault);
        answer.body.resize(std::min(answer.body.size(), static_cast<std::size_t>(fault.number)));
        return {std::move(answer), std::nullopt};
    }
    case FaultKind::Malformed:
        return {sound200("{\"head\": {\"status\": \"200\"}, \"body\": [ {\"element\": outline, }"),
            std::nullopt};
    case FaultKind::Oversized:
        return {padded(sound(), static_cast<std::size_t>(fault.number)), std::nullopt};
    case FaultKind::Truncated:
    case FaultKind::SlowHeaders:
    case FaultKind::Stall:
    case FaultKind::Trickle:
        return slowed(sound(), fault);
    case FaultKind::Reset: {
        Delivery delivery;
        delivery.end = Delivery::End::Reset;
        return {Answer(), delivery};
    }
    case FaultKind::RedirectChain:
        return {redirection(HopFolder + std::to_string(fault.number - 1) + target), std::nullopt};
    case FaultKind::RedirectLoop:
        return {redirection(std::string(HopFolder) + "loop" + target), std::nullopt};
    case FaultKind::Body:
        return {fileBody(fault.argument), std::nullopt};
    case FaultKind::RetryAfter: {
        Answer answer = htmlPage(503);
        answer.headers.emplace_back("Retry-After", fault.argument);
        return {std::move(answer), std::nullopt};
    }
    case FaultKind::LoginPage:
        return {loginPage(), std::nullopt};
    case FaultKind::Down:
    case FaultKind::StreamClose:
    case FaultKind::StreamReset:
    case FaultKind::StreamStall:
    case FaultKind::StreamGarbage:
        break; // not faults of a request
    }
    return {textAnswer(500, "This fault is unknown."), std::nullopt};
}

std::optional<Hop> hopOf(const std::string &target)
{
    const std::size_t start = sizeof HopFolder - 1;
    const std::size_t end = target.find('/', start);
    if (target.rfind(HopFolder, 0) != 0 || end == std::string::npos)
        return std::nullopt;
    const std::string count = target.substr(start, end - start);
    Hop hop;
    hop.target = target.substr(end);
    if (count == "loop") {
        hop.location = target;
        return hop;
    }
    const int left = parseNumber(count);
    if (left < 0)
        return std::nullopt;
    if (left > 0)
        hop.location = HopFolder + std::to_string(left - 1) + hop.target;
    return hop;
}

Answer redirection(const std::string &location)
{
    Answer answer = textAnswer(302, "It is elsewhere.");
    answer.headers.emplace_back("Location", location);
    return answer;
}

} // namespace directory
