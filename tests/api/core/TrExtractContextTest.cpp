// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"
#include "api/core/log.h"

#include <gtest/gtest.h>

#include <QMap>

#include <cctype>
#include <ostream>

namespace {

struct Case {
    const char *signature;
    const char *context;
};

/// For the test's name, which takes no brackets.
std::ostream &operator<<(std::ostream &out, const Case &value)
{
    for (const char *c = value.context; *c; ++c)
        out << (isalnum(static_cast<unsigned char>(*c)) ? *c : '_');
    return out;
}

class Signature : public testing::TestWithParam<Case> { };

} // namespace

TEST_P(Signature, GivesTheQualifiedNameWithParameters)
{
    EXPECT_EQ(trExtractContext(GetParam().signature), QString::fromUtf8(GetParam().context));
}

INSTANTIATE_TEST_SUITE_P(TrExtractContext, Signature,
    testing::Values(Case {"virtual QVariant TuneInAddRemovePresetsNode::getRoleData(const "
                          "QString&, const Params&)",
                        "TuneInAddRemovePresetsNode::getRoleData(const QString&, const Params&)"},
        Case {"CMError TuneInHttpClient::request(const VeskUrl&, QByteArray*, "
              "TuneInHttpClient::Type)",
            "TuneInHttpClient::request(const VeskUrl&, QByteArray*, TuneInHttpClient::Type)"},
        Case {
            "static VeskTuneInFaultCode::Enum TuneInRequest::parseTuneInFaultCode(const QString&)",
            "TuneInRequest::parseTuneInFaultCode(const QString&)"},
        Case {"TuneInAccountNode::TuneInAccountNode(CMTuneInWorker*, const CMPath&)",
            "TuneInAccountNode::TuneInAccountNode(CMTuneInWorker*, const CMPath&)"},
        Case {"virtual TuneInHttpClient::~TuneInHttpClient()",
            "TuneInHttpClient::~TuneInHttpClient()"},
        Case {"TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>",
            "TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>"},
        Case {"void TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>",
            "TuneInHttpClient::on_request(VeskUrl, int, int)::<lambda(const Result&)>"},
        Case {"QMap<QString, QString> Node::params(int) const", "Node::params(int) const"},
        Case {"std::vector<std::pair<int, int> > Node::ranges(std::function<void (int)>)",
            "Node::ranges(std::function<void (int)>)"},
        Case {"unsigned int Table<Key, Value>::size(const QMap<int, int>&)",
            "Table<Key, Value>::size(const QMap<int, int>&)"},
        Case {"const QString& Node::name() const", "Node::name() const"},
        Case {"const QString &Node::name() const", "Node::name() const"},
        Case {"CMNode **Node::nodes()", "Node::nodes()"},
        Case {"void {anonymous}::check(int)", "{anonymous}::check(int)"},
        Case {"void (anonymous namespace)::check(int)", "(anonymous namespace)::check(int)"},
        Case {"auto Node::start()::(anonymous class)::operator()(int) const",
            "Node::start()::(anonymous class)::operator()(int) const"},
        Case {"bool Less::operator()(const Row&, const Row&) const",
            "Less::operator()(const Row&, const Row&) const"},
        Case {"bool operator<(const Row&, const Row&)", "operator<(const Row&, const Row&)"},
        Case {"std::ostream& operator<<(std::ostream&, const Row&)",
            "operator<<(std::ostream&, const Row&)"},
        Case {"Row* Iterator::operator->()", "Iterator::operator->()"},
        Case {"Node::operator QVariant() const", "Node::operator QVariant() const"},
        Case {"virtual Node::operator const QList<int>&() const",
            "Node::operator const QList<int>&() const"},
        Case {"static void* Node::operator new(size_t)", "Node::operator new(size_t)"},
        Case {"int my_operator(int)", "my_operator(int)"},
        Case {"operators::Set operators::all(int)", "operators::all(int)"},
        Case {"decltype (f(0)) call(F&&)", "call(F&&)"},
        Case {"decltype(f(0)) call(F &&)", "call(F &&)"},
        Case {"void set(T) [with T = QMap<int, int>]", "set(T) [with T = QMap<int, int>]"},
        Case {"int main(int, char**)", "main(int, char**)"}, Case {"main", "main"}, Case {"", ""},
        Case {nullptr, ""}, Case {"(", "("}, Case {"void f", "f"},
        Case {"QMap<int, broken", "QMap<int, broken"}));

namespace {

struct Probe {
    static QMap<QString, int> context(const QString &, int, QString &signature)
    {
        signature = trExtractContext(__PRETTY_FUNCTION__);
        return {};
    }
};

} // namespace

TEST(TrExtractContext, ReadsWhatThisCompilerWrites)
{
    QString signature;
    Probe::context(QString(), 0, signature);
#if defined(__clang__)
    EXPECT_EQ(signature,
        QStringLiteral("(anonymous namespace)::Probe::context(const QString &, int, QString &)"));
#else
    EXPECT_EQ(
        signature, QStringLiteral("{anonymous}::Probe::context(const QString&, int, QString&)"));
#endif
}
