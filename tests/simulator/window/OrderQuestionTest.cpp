#include "WindowTest.h"

#include <QMessageBox>
#include <QPushButton>

using namespace sim;

namespace {

/// Does something as soon as a question is shown, from the event loop that the question runs.
class WhenAsked : public QObject {
public:
    using Deed = std::function<void(QMessageBox &question)>;

    explicit WhenAsked(Deed deed) : m_deed(std::move(deed)) { qApp->installEventFilter(this); }

    int questions() const { return m_questions; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *const question = qobject_cast<QMessageBox *>(watched);
        if (question && event->type() == QEvent::Show) {
            ++m_questions;
            QTimer::singleShot(0, question, [this, question] { m_deed(*question); });
        }
        return false;
    }

private:
    const Deed m_deed;
    int m_questions = 0;
};

class OrderQuestionTest : public WindowTest {
protected:
    OrderQuestionTest() { window->setAsksBeforeOrders(true); }

    const int before = numberOfOrders();
};

} // namespace

TEST_F(OrderQuestionTest, YesPlacesTheOrder)
{
    QString text;
    const WhenAsked asked([&](QMessageBox &question) {
        EXPECT_EQ(Qt::ApplicationModal, question.windowModality());
        text = question.text();
        question.button(QMessageBox::Yes)->click();
    });
    const View view = open();
    invoke(view, kOrder);
    ASSERT_TRUE(awaitHeard(view, "Trade_insertOrder_RES"));
    EXPECT_TRUE(heard(view, "Trade_insertOrder_RES").startsWith(QStringLiteral("{\"code\":\"0\"")));
    EXPECT_EQ(before + 1, numberOfOrders());
    EXPECT_TRUE(text.startsWith(QStringLiteral("Place this order?\n\nBuy 100  609001.SH "))) << qPrintable(text);
    EXPECT_TRUE(text.endsWith(QStringLiteral("Limit 13.000"))) << qPrintable(text);
    EXPECT_EQ(1, asked.questions());
}

TEST_F(OrderQuestionTest, NoRefusesItWithAReason)
{
    const WhenAsked asked([](QMessageBox &question) { question.button(QMessageBox::No)->click(); });
    const View view = open();
    invoke(view, kOrder);
    ASSERT_TRUE(awaitHeard(view, "Trade_insertOrder_RES"));
    const QString reply = heard(view, "Trade_insertOrder_RES");
    EXPECT_TRUE(reply.startsWith(QStringLiteral("{\"code\":\"-1\",\"msg\":\"用户取消了委托\""))) << qPrintable(reply);
    EXPECT_EQ(before, numberOfOrders());
    EXPECT_EQ(1, asked.questions());
}

TEST_F(OrderQuestionTest, OtherCallsGoOnDuringTheQuestion)
{
    const View view = open();
    const View other = open();
    const WhenAsked asked([&](QMessageBox &question) {
        invoke(view, kToken);
        invoke(other, kToken);
        EXPECT_TRUE(awaitHeard(view, "Data_getToken_RES"));
        EXPECT_TRUE(awaitHeard(other, "Data_getToken_RES"));
        EXPECT_EQ(1, evaluate(view, QStringLiteral("heard.length")).toInt());
        question.button(QMessageBox::Yes)->click();
    });
    invoke(view, kOrder);
    EXPECT_TRUE(awaitHeard(view, "Trade_insertOrder_RES"));
    EXPECT_EQ(1, asked.questions());
}

TEST_F(OrderQuestionTest, ATabMayBeClosedDuringTheQuestionAndAConfirmedOrderIsPlaced)
{
    const View other = open();
    const View view = open();
    const WhenAsked asked([&](QMessageBox &question) {
        window->closeTab(1);
        EXPECT_TRUE(await([&] { return !view; })); // gone, although its call has not returned
        question.button(QMessageBox::Yes)->click();
    });
    invoke(view, kOrder);
    EXPECT_TRUE(await([&] { return numberOfOrders() == before + 1; }));
    EXPECT_EQ(1, asked.questions());
    invoke(other, kToken);
    ASSERT_TRUE(awaitHeard(other, "Data_getToken_RES"));
    EXPECT_EQ(1, evaluate(other, QStringLiteral("heard.length")).toInt());
}

TEST_F(OrderQuestionTest, APageMayBeReloadedDuringTheQuestionAndTheNewPageGetsNoAnswer)
{
    const View view = open();
    const WhenAsked asked([&](QMessageBox &question) {
        evaluate(view, QStringLiteral("window.isOld = true; 0"));
        view->browser().reload();
        EXPECT_TRUE(awaitTrue(view, QStringLiteral("!window.isOld && document.readyState === 'complete'")));
        invoke(view, kToken);
        EXPECT_TRUE(awaitHeard(view, "Data_getToken_RES"));
        question.button(QMessageBox::Yes)->click();
    });
    invoke(view, kOrder);
    EXPECT_TRUE(await([&] { return numberOfOrders() == before + 1; }));
    invoke(view, "'Data_getLoginTrader_REQ', 'u'");
    ASSERT_TRUE(awaitHeard(view, "Data_getLoginTrader_RES"));
    EXPECT_EQ(2, evaluate(view, QStringLiteral("heard.length")).toInt());
}

TEST_F(OrderQuestionTest, NobodyIsAskedUnlessItIsWanted)
{
    window->setAsksBeforeOrders(false);
    const WhenAsked asked([](QMessageBox &question) { question.button(QMessageBox::No)->click(); });
    const View view = open();
    invoke(view, kOrder);
    ASSERT_TRUE(awaitHeard(view, "Trade_insertOrder_RES"));
    EXPECT_EQ(before + 1, numberOfOrders());
    EXPECT_EQ(0, asked.questions());
}
