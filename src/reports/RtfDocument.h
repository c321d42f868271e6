#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <memory>
#include <vector>

class QTextDocument;

// The scratch document of every report: paragraphs of styled runs, composed by appending at
// the end as a rich-text control is driven through its selection. Qt neither reads nor writes
// RTF, so the document writes its own (WriteRtf) and lays itself out for a printer through a
// QTextDocument (ToTextDocument).
class RtfDocument {
public:
    enum class Alignment { Left, Right, Center };

    struct Run {
        QString text;
        int font = 0; // index into Fonts()
        int points = 10;
        bool bold = false;
        bool underline = false;
    };

    struct Paragraph {
        Alignment alignment = Alignment::Left;
        QList<int> tabs;       // tab stops, twips from the left edge
        int hangingIndent = 0; // twips: the lines after the first stand this far in
        std::vector<Run> runs;
    };

    RtfDocument();

    // The character format of what is appended next.
    void SetFontName(const QString& name);
    void SetFontSize(int points);
    void SetBold(bool bold);
    void SetUnderline(bool underline);
    // The alignment of the paragraph at the end while it holds no text yet, and of every
    // paragraph begun after.
    void SetAlignment(Alignment alignment);

    // Appends text at the end. A line end (CR LF, CR or LF) ends the paragraph and begins the
    // next, which takes the paragraph format of the one it follows.
    void Append(const QString& text);

    // Appends another document at the end: its first paragraph fills the last one here when
    // that is still empty, as if its text had been appended here.
    void AppendDocument(const RtfDocument& other);

    // Gives the paragraphs from `first` to the last one tab stops and a hanging indent.
    void SetTabsAndHangingIndent(int first, const QList<int>& tabs, int hangingIndent);

    int ParagraphCount() const { return static_cast<int>(mParagraphs.size()); }
    bool IsEmpty() const;
    const std::vector<Paragraph>& Paragraphs() const { return mParagraphs; }
    const QStringList& Fonts() const { return mFonts; }
    // The document's text, paragraphs separated by CR LF.
    QString Text() const;

    // The whole document as RTF: fonts, sizes, bold, underline, alignment, tab stops and
    // hanging indents; braces and backslashes escaped, everything outside printable ASCII
    // written as \uN? (UTF-16 code units), so any text comes through intact.
    QByteArray ToRtf() const;

    // The document for a device of the given resolution (dots per inch), fonts in points.
    // Qt's layout takes paragraph indents in the device's pixels but tab stops in pixels of
    // the screen's resolution, which it scales to the device itself: tabDotsPerInch.
    std::unique_ptr<QTextDocument> ToTextDocument(double dotsPerInch, double tabDotsPerInch) const;

private:
    Run mFormat;
    Alignment mNextAlignment = Alignment::Left;
    std::vector<Paragraph> mParagraphs;
    QStringList mFonts;
};
