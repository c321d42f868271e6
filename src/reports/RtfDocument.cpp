#include "reports/RtfDocument.h"

#include <QFont>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace {
constexpr double kTwipsPerInch = 1440.0;
// Tab stops where a paragraph has none of its own: every half inch, as word processors do.
constexpr int kDefaultTabTwips = 720;

void AppendEscaped(QByteArray& out, const QString& text) {
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit == u'\\' || unit == u'{' || unit == u'}') {
            out += '\\';
            out += static_cast<char>(unit);
        } else if (unit == u'\t') {
            out += "\\tab ";
        } else if (unit >= 0x20 && unit < 0x7f) {
            out += static_cast<char>(unit);
        } else {
            // RTF takes a signed 16-bit number; "?" stands in for readers without Unicode.
            out += "\\u";
            out += QByteArray::number(static_cast<qint16>(unit));
            out += '?';
        }
    }
}

const char* AlignmentWord(RtfDocument::Alignment alignment) {
    switch (alignment) {
    case RtfDocument::Alignment::Center:
        return "\\qc";
    case RtfDocument::Alignment::Right:
        return "\\qr";
    default:
        return "\\ql";
    }
}

Qt::Alignment QtAlignment(RtfDocument::Alignment alignment) {
    switch (alignment) {
    case RtfDocument::Alignment::Center:
        return Qt::AlignHCenter;
    case RtfDocument::Alignment::Right:
        return Qt::AlignRight;
    default:
        return Qt::AlignLeft;
    }
}
} // namespace

RtfDocument::RtfDocument() : mParagraphs(1) {
    mFonts.append(QStringLiteral("Arial"));
}

void RtfDocument::SetFontName(const QString& name) {
    qsizetype index = mFonts.indexOf(name);
    if (index < 0) {
        mFonts.append(name);
        index = mFonts.size() - 1;
    }
    mFormat.font = static_cast<int>(index);
}

void RtfDocument::SetFontSize(int points) {
    mFormat.points = points;
}

void RtfDocument::SetBold(bool bold) {
    mFormat.bold = bold;
}

void RtfDocument::SetUnderline(bool underline) {
    mFormat.underline = underline;
}

void RtfDocument::SetAlignment(Alignment alignment) {
    Paragraph& last = mParagraphs.back();
    if (last.runs.empty())
        last.alignment = alignment;
    mNextAlignment = alignment;
}

void RtfDocument::Append(const QString& text) {
    qsizetype start = 0;
    const auto addRun = [this, &text](qsizetype from, qsizetype to) {
        if (to <= from)
            return;
        std::vector<Run>& runs = mParagraphs.back().runs;
        const Run& f = mFormat;
        if (!runs.empty()) {
            Run& r = runs.back();
            if (r.font == f.font && r.points == f.points && r.bold == f.bold &&
                r.underline == f.underline) {
                r.text += QStringView(text).mid(from, to - from);
                return;
            }
        }
        Run run = f;
        run.text = text.mid(from, to - from);
        runs.push_back(std::move(run));
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\r') && c != QLatin1Char('\n'))
            continue;
        addRun(start, i);
        if (c == QLatin1Char('\r') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
            ++i;
        start = i + 1;
        Paragraph next;
        next.alignment = mNextAlignment;
        next.tabs = mParagraphs.back().tabs;
        next.hangingIndent = mParagraphs.back().hangingIndent;
        mParagraphs.push_back(std::move(next));
    }
    addRun(start, text.size());
}

void RtfDocument::AppendDocument(const RtfDocument& other) {
    QList<int> fonts;
    for (const QString& name : other.mFonts) {
        SetFontName(name);
        fonts.append(mFormat.font);
    }
    const auto remapped = [&fonts](Paragraph paragraph) {
        for (Run& run : paragraph.runs)
            run.font = fonts.value(run.font);
        return paragraph;
    };
    auto paragraph = other.mParagraphs.begin();
    if (mParagraphs.back().runs.empty())
        mParagraphs.back() = remapped(*paragraph++);
    for (; paragraph != other.mParagraphs.end(); ++paragraph)
        mParagraphs.push_back(remapped(*paragraph));
    mFormat = other.mFormat;
    mFormat.font = fonts.value(other.mFormat.font);
    mNextAlignment = other.mNextAlignment;
}

void RtfDocument::SetTabsAndHangingIndent(int first, const QList<int>& tabs, int hangingIndent) {
    for (size_t i = static_cast<size_t>(std::max(first, 0)); i < mParagraphs.size(); ++i) {
        mParagraphs[i].tabs = tabs;
        mParagraphs[i].hangingIndent = hangingIndent;
    }
}

bool RtfDocument::IsEmpty() const {
    return mParagraphs.size() == 1 && mParagraphs.front().runs.empty();
}

QString RtfDocument::Text() const {
    QString text;
    bool first = true;
    for (const Paragraph& paragraph : mParagraphs) {
        if (!first)
            text += QLatin1String("\r\n");
        first = false;
        for (const Run& run : paragraph.runs)
            text += run.text;
    }
    return text;
}

QByteArray RtfDocument::ToRtf() const {
    QByteArray out;
    out.reserve(1024 + static_cast<qsizetype>(mParagraphs.size()) * 64);
    out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\\deftab";
    out += QByteArray::number(kDefaultTabTwips);
    out += "{\\fonttbl";
    for (qsizetype i = 0; i < mFonts.size(); ++i) {
        out += "{\\f" + QByteArray::number(i) + "\\fswiss\\fcharset0 ";
        AppendEscaped(out, mFonts.at(i));
        out += ";}";
    }
    out += "}\r\n";

    // Character formatting carries across paragraphs; only what changes is written.
    Run current;
    current.points = -1; // forces the first run to state its font and size
    bool firstRun = true;
    for (size_t p = 0; p < mParagraphs.size(); ++p) {
        const Paragraph& paragraph = mParagraphs[p];
        out += "\\pard";
        out += AlignmentWord(paragraph.alignment);
        if (paragraph.hangingIndent != 0) {
            out += "\\li" + QByteArray::number(paragraph.hangingIndent);
            out += "\\fi" + QByteArray::number(-paragraph.hangingIndent);
        }
        for (int tab : paragraph.tabs)
            out += "\\tx" + QByteArray::number(tab);
        for (const Run& run : paragraph.runs) {
            if (firstRun || run.font != current.font)
                out += "\\f" + QByteArray::number(run.font);
            if (run.points != current.points)
                out += "\\fs" + QByteArray::number(run.points * 2);
            if (firstRun || run.bold != current.bold)
                out += run.bold ? "\\b" : "\\b0";
            if (firstRun || run.underline != current.underline)
                out += run.underline ? "\\ul" : "\\ulnone";
            out += ' ';
            AppendEscaped(out, run.text);
            current = run;
            firstRun = false;
        }
        if (p + 1 < mParagraphs.size())
            out += "\\par\r\n";
    }
    out += "\r\n}\r\n";
    return out;
}

std::unique_ptr<QTextDocument> RtfDocument::ToTextDocument(double dotsPerInch,
                                                           double tabDotsPerInch) const {
    auto document = std::make_unique<QTextDocument>();
    document->setDocumentMargin(0);
    QTextOption option = document->defaultTextOption();
    option.setTabStopDistance(kDefaultTabTwips * tabDotsPerInch / kTwipsPerInch);
    document->setDefaultTextOption(option);

    const auto pixels = [dotsPerInch](int twips) {
        return twips * dotsPerInch / kTwipsPerInch;
    };
    const auto tabPixels = [tabDotsPerInch](int twips) {
        return twips * tabDotsPerInch / kTwipsPerInch;
    };
    QTextCursor cursor(document.get());
    // An empty paragraph is as tall as the text before it.
    QTextCharFormat format;
    bool first = true;
    for (const Paragraph& paragraph : mParagraphs) {
        QTextBlockFormat block;
        block.setAlignment(QtAlignment(paragraph.alignment));
        block.setLeftMargin(pixels(paragraph.hangingIndent));
        block.setTextIndent(-pixels(paragraph.hangingIndent));
        QList<QTextOption::Tab> tabs;
        for (int tab : paragraph.tabs)
            tabs.append(QTextOption::Tab(tabPixels(tab), QTextOption::LeftTab));
        block.setTabPositions(tabs);
        if (first)
            cursor.setBlockFormat(block);
        else
            cursor.insertBlock(block, format);
        first = false;
        for (const Run& run : paragraph.runs) {
            format = QTextCharFormat();
            QFont font(mFonts.value(run.font));
            font.setPointSize(run.points);
            font.setBold(run.bold);
            font.setUnderline(run.underline);
            format.setFont(font);
            cursor.insertText(run.text, format);
        }
    }
    return document;
}
