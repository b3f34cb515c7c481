#ifndef OD_DB_MTEXT_FORMAT_H
#define OD_DB_MTEXT_FORMAT_H

/// The inline format codes of multi-line text and the layout of its lines, as plain values
/// computed without a database, so that both are checked on their own. OdDbMText wires them
/// to its fields, drawing, explode and extents; the rules are written down in
/// docs/text-metrics.md.
///
/// Codes understood (a code that needs a closing ';' and has none, or has a value that makes
/// no sense, is kept as the characters typed, so no text is lost):
///   \P, a line feed, a carriage return (a "\r\n" pair once)   paragraph break
///   \\ \{ \}                       a literal backslash or brace
///   { }                            a group: format changes inside end at its close
///   \H<h>;  \H<f>x;                character height, absolute or relative to the current one
///   \W<f>;  \W<f>x;                width factor, absolute or relative
///   \C<aci>;                       colour by index (0 by block, 256 by layer)
///   \c<bgr>;                       true colour, 0xBBGGRR as the drawing programs write it
///   \f...; \F...; \A<n>; \Q<a>; \T<f>; \p...;   font, alignment, oblique, tracking,
///                                  paragraph settings: read and dropped (no effect on metrics)
///   \L \l \O \o \K \k              under-, over-, strike-line on and off: dropped
///   \S<a>^<b>; \S<a>/<b>; \S<a>#<b>;   a stack, laid out in line as "a/b"
///   \~                             non-breaking space (U+00A0)
///   \U+XXXX                        the code point with that hexadecimal value
///   %%c %%d %%p %%%                ⌀ (U+2300), ° (U+00B0), ± (U+00B1), % (any letter case)
/// Any other backslash code, a dangling "\" at the end and an unmatched "}" are kept as typed;
/// an unclosed "{" lasts to the end.

#include "CmColor.h"
#include "OdString.h"

#include <vector>

/// A run of characters that share one format.
struct OdDbMTextFragment {
  OdString text;
  /// Character (cap) height after the \H codes in force.
  double height = 0.0;
  /// After the \W codes in force.
  double widthFactor = 1.0;
  /// Whether a \C or \c code coloured the run; otherwise the entity's colour applies.
  bool hasColor = false;
  OdCmEntityColor color;
  /// Set by the layout: the run's start along its line from the line's start, and its advance.
  double offset = 0.0;
  double width = 0.0;
};

/// The fragments of one paragraph and the height in force where it begins, which is the
/// height of the paragraph when it is empty.
struct OdDbMTextParagraph {
  std::vector<OdDbMTextFragment> fragments;
  double height = 0.0;
};

/// Resolves the format codes of contents, with textHeight the height of text outside any \H
/// code. An empty string is one empty paragraph. A textHeight that is not a positive finite
/// number gives heights of 0 (nothing has a size).
std::vector<OdDbMTextParagraph> oddbParseMText(const OdString& contents, double textHeight);

/// The plain characters of the paragraphs, joined by "\r\n".
OdString oddbMTextPlainText(const std::vector<OdDbMTextParagraph>& paragraphs);

/// Contents with every absolute \H height multiplied by factor (relative heights already
/// follow the text height), so that a scaled text keeps its proportions. Everything else is
/// kept character for character.
OdString oddbScaleMTextHeights(const OdString& contents, double factor);

/// Contents with every line feed, carriage return and "\r\n" pair written as the paragraph
/// code "\P": the same text, in a form that fits on one line of a file.
OdString oddbMTextContentsWithoutLineBreaks(const OdString& contents);

/// One laid-out line, in the text's own plane: x along the baseline direction and y across it
/// (up), both measured from the text's location.
struct OdDbMTextLayoutLine {
  std::vector<OdDbMTextFragment> fragments;
  /// The plain characters of the line.
  OdString text;
  /// The largest fragment height (the paragraph's height for an empty line).
  double height = 0.0;
  /// The line's advance.
  double width = 0.0;
  /// Start of the baseline.
  double x = 0.0;
  double y = 0.0;
};

/// A laid-out block and its box, in the same plane coordinates as its lines.
struct OdDbMTextLayout {
  std::vector<OdDbMTextLayoutLine> lines;
  /// The widest line's advance.
  double width = 0.0;
  /// From the first line's cap height to the last line's descenders.
  double height = 0.0;
  double left = 0.0;
  double right = 0.0;
  double bottom = 0.0;
  double top = 0.0;
};

/// Lays out paragraphs into lines. With wrapWidth above 0 a paragraph is wrapped at spaces
/// (and around full-width characters, which may break anywhere) so that each line fits the
/// width; a word wider than it gets a line of its own. Spaces at a wrap are dropped. Baselines
/// lie lineSpacingFactor x kLineSpacing x the larger height of two neighbouring lines apart.
/// attachment (1 top left .. 9 bottom right) puts that point of the block on the origin:
/// top is the first line's cap height, bottom the last line's descenders, middle half-way;
/// left, centre and right align each line's start, middle or end with the origin. A value
/// outside 1..9 is taken as top left.
OdDbMTextLayout oddbLayoutMText(const std::vector<OdDbMTextParagraph>& paragraphs, double wrapWidth,
                                double lineSpacingFactor, int attachment);

#endif
