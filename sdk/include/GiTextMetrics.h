#ifndef OD_GI_TEXT_METRICS_H
#define OD_GI_TEXT_METRICS_H

/// The platform's one source of text extents. Layouts that depend on how long a text is (a
/// dimension shoulder, a table column, a text's alignment point) all ask here, so a drawing
/// lays out the same on every machine whatever fonts it has. Rendering may draw real glyphs;
/// only the measures come from this service. The rule is written down in
/// docs/text-metrics.md; the constants below are that rule.
///
/// Default rule, per Unicode code point of the string (a surrogate pair is one code point):
///   - a full-width character (isFullWidth) advances kFullWidthAdvance x height x width factor;
///   - a control character (U+0000..U+001F, U+007F) advances nothing;
///   - any other character advances kNarrowAdvance x height x width factor.
/// A line reaches kCapHeight x height above its baseline and kDescent x height below it;
/// consecutive baselines of a multi-line text are kLineSpacing x height apart.
///
/// An application with real font metrics replaces the line-width rule with
/// odgiSetTextLineWidthFunction; every measure below (and the extents collector) then follows.

#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"
#include "OdString.h"

#include <functional>
#include <vector>

namespace OdGiTextMetrics {
/// Advance of a Latin or other proportional character, as a fraction of the height.
constexpr double kNarrowAdvance = 0.6;
/// Advance of a CJK ideograph, kana, hangul or full-width form: a square cell.
constexpr double kFullWidthAdvance = 1.0;
/// Top of the letters above the baseline, as a fraction of the height (the height is the
/// cap height, as in the drawing formats).
constexpr double kCapHeight = 1.0;
/// Descenders below the baseline, as a fraction of the height ("bottom" alignment).
constexpr double kDescent = 1.0 / 3.0;
/// Distance between consecutive baselines, as a fraction of the height.
constexpr double kLineSpacing = 5.0 / 3.0;
} // namespace OdGiTextMetrics

/// The advance of one line of text in drawing units. Text codes are not interpreted.
typedef std::function<double(const OdString& text, double height, double widthFactor)>
    OdGiTextLineWidthFunction;

/// True for code points drawn in a square cell: U+1100..U+115F (hangul leading jamo),
/// U+2E80..U+303E (CJK radicals, Kangxi, CJK symbols and punctuation), U+3041..U+33FF
/// (hiragana, katakana, bopomofo, hangul compatibility jamo, enclosed CJK, CJK compatibility),
/// U+3400..U+4DBF (CJK extension A), U+4E00..U+9FFF (CJK unified ideographs), U+A000..U+A4CF
/// (Yi), U+AC00..U+D7A3 (hangul syllables), U+F900..U+FAFF (CJK compatibility ideographs),
/// U+FE30..U+FE4F (CJK compatibility forms), U+FF00..U+FF60 and U+FFE0..U+FFE6 (full-width
/// forms), U+20000..U+3FFFD (supplementary ideographic planes).
bool odgiIsFullWidth(OdUInt32 codePoint);

/// The built-in rule, whatever function is installed. Non-finite or negative height or width
/// factor give 0.
double odgiDefaultTextLineWidth(const OdString& text, double height, double widthFactor);

/// The advance of one line through the installed function (the built-in rule by default). A
/// result that is not a finite non-negative number counts as 0, so a faulty replacement cannot
/// turn a layout into NaNs.
double odgiTextLineWidth(const OdString& text, double height, double widthFactor);

/// Installs the application's line-width rule; an empty function restores the built-in one.
/// Process-wide, like the platform's other services; call it from the application's one
/// thread.
void odgiSetTextLineWidthFunction(OdGiTextLineWidthFunction function);

/// The lines of a multi-line text: split at the paragraph code "\P" and at '\n' (a "\r\n" pair
/// is one break). An escaped backslash "\\" is kept as written and never starts a break. An
/// empty string is one empty line.
std::vector<OdString> odgiSplitTextLines(const OdString& text);

/// The size of a block of text lines: the widest line's advance, and the distance from the
/// top of the first line to the bottom of the last one's descenders
/// (kCapHeight + (n - 1) x kLineSpacing + kDescent, times the height).
struct OdGiTextBlockSize {
  double width = 0.0;
  double height = 0.0;
  int lineCount = 0;
};
OdGiTextBlockSize odgiTextBlockSize(const OdString& text, double height, double widthFactor);

/// The four corners of one line of text drawn at position (baseline start) along direction in
/// the plane of normal: baseline start, baseline end, top end, top start. The top is kCapHeight
/// x height above the baseline, shifted along the baseline by the oblique slant. False, corners
/// untouched, for a direction with no component in the plane, a zero normal, or non-finite
/// input.
bool odgiTextBox(const OdGePoint3d& position, const OdGeVector3d& normal,
                 const OdGeVector3d& direction, double height, double widthFactor, double oblique,
                 const OdString& text, OdGePoint3d corners[4]);

#endif
