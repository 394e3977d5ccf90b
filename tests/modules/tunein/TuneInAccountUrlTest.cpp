// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/web/VeskUrl.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Operation = VeskTuneInAccountOperation;

/// What an operation sends after "/Account.ashx?render=json&partnerId=partner&".
struct Items {
    Operation::Enum operation;
    const char *items;
};

const Items FilledItems[] = {
    {Operation::auth, "c=auth&username=me&password=sesame"},
    {Operation::create,
        "c=create&username=me&password=sesame&email=me%40example.org&postalCode=10115"},
    {Operation::join, "c=join&username=me&password=sesame&serial=ABC"},
    {Operation::drop, "c=drop&username=me&password=sesame&serial=ABC"},
    {Operation::query, "c=query&serial=ABC"},
    {Operation::remind, "c=remind&email=me%40example.org"},
    {Operation::reset, "c=reset&username=me&email=me%40example.org"},
    {Operation::claim, "c=claim&serial=ABC"},
};

const Items EmptyItems[] = {
    {Operation::auth, "c=auth&username=&password="},
    {Operation::create, "c=create&username=&password=&email=&city=&countryId="},
    {Operation::join, "c=join&username=&password=&serial=ABC"},
    {Operation::drop, "c=drop&username=&password=&serial=ABC"},
    {Operation::query, "c=query&serial=ABC"},
    {Operation::remind, "c=remind&email="},
    {Operation::reset, "c=reset"},
    {Operation::claim, "c=claim&serial=ABC"},
};

VeskTuneInAccount emptyAccount(Operation::Enum operation)
{
    VeskTuneInAccount account;
    account.setOperation(operation);
    return account;
}

QByteArray call(const QByteArray &items)
{
    return "POST /Account.ashx?render=json&partnerId=partner&" + items;
}

class TuneInAccountUrlTest : public TuneInAccountFixture {
protected:
    /// Runs the operation and expects it to send exactly these items.
    void expectSent(const VeskTuneInAccount &account, const QByteArray &items)
    {
        write(account);
        expectAccountRequests({call(items)});
    }

    /// Writes \a account and expects that it fails before anything is sent.
    void expectRefused(const VeskTuneInAccount &account, const char *message)
    {
        const Answer answer = write(account);
        EXPECT_EQ(answer.error.name(), CMError::DefaultName());
        EXPECT_EQ(answer.error.message(), TrString("TuneIn", message));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_EQ(answer.error.size(), 3);
        expectAccountRequests({});
    }
};

} // namespace

TEST_F(TuneInAccountUrlTest, SendsTheItemsOfEachOperationInTheirOrder)
{
    start();
    for (const Items &sent : FilledItems)
        expectSent(filledAccount(sent.operation), sent.items);
}

TEST_F(TuneInAccountUrlTest, SendsEmptyInputsUnlessTheyAreOptional)
{
    start();
    for (const Items &sent : EmptyItems)
        expectSent(emptyAccount(sent.operation), sent.items);
}

TEST_F(TuneInAccountUrlTest, LeavesOutAnEmptyPartnerIdOfEachOperation)
{
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    for (const Items &sent : FilledItems) {
        write(filledAccount(sent.operation));
        expectAccountRequests({QByteArray("POST /Account.ashx?render=json&") + sent.items});
    }
}

TEST_F(TuneInAccountUrlTest, SendsAnEmptySerialOnlyWithOperationsThatHaveOne)
{
    start();
    // Settings that were never loaded: load() always finds a serial.
    onWorker([this] { const_cast<TuneInSettings &>(worker()->settings()) = TuneInSettings(); });
    const Items withoutSettings[] = {
        {Operation::auth, "c=auth&username=me&password=sesame"},
        {Operation::join, "c=join&username=me&password=sesame&serial="},
        {Operation::drop, "c=drop&username=me&password=sesame&serial="},
        {Operation::query, "c=query&serial="},
        {Operation::remind, "c=remind&email=me%40example.org"},
        {Operation::claim, "c=claim&serial="},
    };
    for (const Items &sent : withoutSettings) {
        write(filledAccount(sent.operation));
        expectAccountRequests({QByteArray("POST /Account.ashx?render=json&") + sent.items});
    }
    read();
    expectAccountRequests({"POST /Account.ashx?render=json&c=query&serial="});
}

TEST_F(TuneInAccountUrlTest, SendsThePostalCodeOrCityAndCountry)
{
    start();
    const QByteArray start = "c=create&username=me&password=sesame&email=me%40example.org";
    VeskTuneInAccount account = filledAccount(Operation::create);
    expectSent(account, start + "&postalCode=10115");
    account.setPostalCode(QString());
    expectSent(account, start + "&city=Berlin&countryId=n88");
    account.setCountryId(QString());
    expectSent(account, start + "&city=Berlin&countryId=");
    account.setCity(QString());
    expectSent(account, start + "&city=&countryId=");
    account.setPostalCode("10115"_s);
    expectSent(account, start + "&postalCode=10115");
}

TEST_F(TuneInAccountUrlTest, SendsTheUserNameAndEmailOfAResetWhenPresent)
{
    start();
    VeskTuneInAccount account = emptyAccount(Operation::reset);
    expectSent(account, "c=reset");
    account.setEmail("me@example.org"_s);
    expectSent(account, "c=reset&email=me%40example.org");
    account.setUserName("me"_s);
    account.setPassword("sesame"_s);
    expectSent(account, "c=reset&username=me&email=me%40example.org");
    account.setEmail(QString());
    expectSent(account, "c=reset&username=me");
}

TEST_F(TuneInAccountUrlTest, SendsOnlyRenderAndOperationForAnEmptyReset)
{
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    write(emptyAccount(Operation::reset));
    expectAccountRequests({"POST /Account.ashx?render=json&c=reset"});
}

TEST_F(TuneInAccountUrlTest, EncodesReservedCharacters)
{
    start();
    VeskTuneInAccount account = emptyAccount(Operation::auth);
    account.setUserName("a&c=drop#é"_s);
    account.setPassword("x y+z%41=?/\r\n"_s);
    expectSent(
        account, "c=auth&username=a%26c%3Ddrop%23%C3%A9&password=x%20y%2Bz%2541%3D%3F%2F%0D%0A");
}

TEST_F(TuneInAccountUrlTest, UsesHttps)
{
    start();
    for (const Items &sent : FilledItems) {
        VeskUrl url;
        onWorker(
            [&] { EXPECT_TRUE(node()->prepareUrl(filledAccount(sent.operation), url).isEmpty()); });
        EXPECT_EQ(url.toEncoded(),
            QByteArray("https://opml.radiotime.com/Account.ashx?render=json&partnerId=partner&")
                + sent.items);
    }
}

TEST_F(TuneInAccountUrlTest, FailsForAUserNameOrAPasswordAlone)
{
    start();
    for (const Operation::Enum operation : AllOperations) {
        log().clear();
        VeskTuneInAccount user = filledAccount(operation);
        user.setPassword(QString());
        expectRefused(user, "Invalid password or user name.");
        VeskTuneInAccount password = filledAccount(operation);
        password.setUserName(QString());
        expectRefused(password, "Invalid password or user name.");
        EXPECT_THAT(log().lines("ERROR"_s),
            ElementsAre("TuneInAccountNode::setDataRequest: Failed to create query!"_s,
                "TuneInAccountNode::setDataRequest: Failed to create query!"_s));
    }
}

TEST_F(TuneInAccountUrlTest, FailsForAnUnknownOperation)
{
    start();
    const struct {
        int code;
        const char *text;
    } unknown[] = {{0, "none"}, {9, "9"}, {-1, "-1"}, {115, "115"}};
    for (const auto &[code, text] : unknown) {
        log().clear();
        expectRefused(filledAccount(Operation::Enum(code)), "Unknown method");
        EXPECT_THAT(log().lines("ERROR"_s),
            ElementsAre("prepareUrl: unknown method '"_s + QLatin1String(text) + "'"_s,
                "TuneInAccountNode::setDataRequest: Failed to create query!"_s));
    }
}

TEST_F(TuneInAccountUrlTest, FailsWithoutAnOperation)
{
    start();
    expectRefused(VeskTuneInAccount(), "Unknown method");
}

TEST_F(TuneInAccountUrlTest, ChecksCredentialsBeforeTheOperation)
{
    start();
    log().clear();
    VeskTuneInAccount account = filledAccount(Operation::none);
    account.setPassword(QString());
    expectRefused(account, "Invalid password or user name.");
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("TuneInAccountNode::setDataRequest: Failed to create query!"_s));
}

TEST_F(TuneInAccountUrlTest, LeavesTheUrlUnchangedOnFailure)
{
    start();
    const VeskUrl before("http://before.example.org/?a=b"_s);
    VeskUrl url = before;
    VeskTuneInAccount half = filledAccount(Operation::auth);
    half.setPassword(QString());
    onWorker([&] {
        EXPECT_EQ(node()->prepareUrl(half, url).message().sourceText(),
            "Invalid password or user name."_s);
        EXPECT_EQ(node()->prepareUrl(filledAccount(Operation::none), url).message().sourceText(),
            "Unknown method"_s);
    });
    EXPECT_EQ(url, before);
    log().clear();
    onWorker([&] { node()->prepareUrl(half, url); });
    EXPECT_THAT(log().lines(), IsEmpty());
}
