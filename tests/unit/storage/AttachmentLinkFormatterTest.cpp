#include "core/storage/AttachmentLinkFormatter.h"
#include "support/TestMain.h"

#include <QTest>

using AttachmentLinkFormatter::appendLinks;
using AttachmentLinkFormatter::Link;

namespace {
const QUrl first(QStringLiteral("https://files.example.com/a/first.png"));
const QUrl second(QStringLiteral("https://files.example.com/b/second.mov"));
} // namespace

class AttachmentLinkFormatterTest : public QObject {
    Q_OBJECT

private slots:
    void bracketsAndBackslashesInANameAreEscapedOnceEach() {
        QCOMPARE(appendLinks(std::nullopt, {Link(QStringLiteral("a]b[c\\d"), first)}),
                 QStringLiteral("[a\\]b\\[c\\\\d](https://files.example.com/a/first.png)"));
    }

    void oneLinkWithoutDescriptionIsTheSingleLineWithoutRuleOrLineFeed() {
        QCOMPARE(appendLinks(std::nullopt, {Link(QStringLiteral("first.png"), first)}),
                 QStringLiteral("[first.png](https://files.example.com/a/first.png)"));
    }

    void twoLinksAndADescriptionOfBlanksAreTheTwoLinesWithoutRule() {
        QCOMPARE(appendLinks(QStringLiteral(" \n\t "),
                             {Link(QStringLiteral("first.png"), first), Link(QStringLiteral("second.mov"), second)}),
                 QStringLiteral("[first.png](https://files.example.com/a/first.png)\n"
                                "[second.mov](https://files.example.com/b/second.mov)"));
    }

    void noLinksGiveTheDescriptionTrimmed() {
        QCOMPARE(appendLinks(QStringLiteral("  \nSome notes\n\n "), {}), QStringLiteral("Some notes"));
    }

    void noLinksAndNoDescriptionGiveTheEmptyText() { QCOMPARE(appendLinks(std::nullopt, {}), QString()); }

    void aDescriptionIsSeparatedFromItsLinksByARuleAndLosesItsTrailingBlanks() {
        QCOMPARE(appendLinks(QStringLiteral("Steps to reproduce  \n"), {Link(QStringLiteral("first.png"), first)}),
                 QStringLiteral("Steps to reproduce\n\n---\n\n[first.png](https://files.example.com/a/first.png)"));
    }

    void theURLIsWrittenAsItsEncodedTextAndNotEscapedFurther() {
        const QUrl spaced(QStringLiteral("https://files.example.com/a/My file (1).png"));
        QCOMPARE(appendLinks(std::nullopt, {Link(QStringLiteral("My file (1).png"), spaced)}),
                 QStringLiteral("[My file (1).png](https://files.example.com/a/My%20file%20(1).png)"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentLinkFormatterTest)
#include "AttachmentLinkFormatterTest.moc"
