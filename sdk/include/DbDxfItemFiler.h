#ifndef OD_DB_DXF_ITEM_FILER_H
#define OD_DB_DXF_ITEM_FILER_H

/// The platform's DXF filer: it keeps an object's group-code items in memory, each value as the
/// text an ASCII DXF file holds for it, so the drawing-file writer only has to print the items
/// and the reader only has to collect them. The text of each value kind:
///
///   integers   decimal ("-3", "70000")
///   doubles    at the filer's full precision (kMaxPrec, the default) the shortest text that
///              reads back to the same double, with ".0" added to whole numbers ("1.0",
///              "0.1", "1e+300"); at a lower precision rounded to that many significant digits
///   strings    as given, UTF-16 (the file writer converts to the file's encoding)
///   handles    upper-case hex without leading zeros ("0" for the null handle)
///   binary     upper-case hex, at most 127 bytes per item
///
/// Each group code has one value type, from the public DXF group-code ranges (valueType()).
/// Writing a value at a code of another type is refused: filerStatus() becomes
/// eInvalidDxfCode and nothing is written. Integer writers accept any integer code whose
/// range holds the value (wrInt32(70, 5) is fine, wrInt32(70, 70000) is refused). A double
/// that is not finite and a string holding a line break (which would split the file's line
/// structure) are refused with eInvalidInput, also writing nothing.
///
/// Reading parses the text of the current item strictly: surrounding blanks are allowed, any
/// other extra character, an empty value, a number outside the asked width, or a value read
/// at a code of another type sets eInvalidDxfCode and returns zero (empty, null). A read with
/// no current item (before the first nextItem(), after pushBackItem(), or while writing) sets
/// eNotApplicable; nextItem() past the last item sets eEndOfFile and returns -1. As with the
/// DWG filer the first failure sticks, so a reader may check the status once at the end.

#include "DbFiler.h"

#include <string>
#include <vector>

class OdDbDxfItemFiler : public OdDbDxfFiler {
public:
  /// One group-code / value pair. A reader that has parsed a value already (the drawing-file
  /// reader checks every value as it reads the file) hands the result over with the item, so
  /// the value is not parsed a second time; items made from text alone keep form kText.
  struct Item {
    /// What the item holds besides the code.
    enum Form : unsigned char {
      kText,    ///< value only
      kReal,    ///< value, and real: the double it reads as
      kInteger, ///< value, and integer: the integer it reads as
      kBytes    ///< bytes: a binary group's data, decoded; value is empty
    };
    Item() = default;
    Item(int groupCode, const OdString& text) : code(groupCode), value(text) {}

    int code = 0;
    OdString value;
    Form form = kText;
    double real = 0.0;
    OdInt64 integer = 0;
    OdUInt8Array bytes;
  };
  typedef std::vector<Item> ItemArray;

  /// The value type of a group code. 280..289 count as kInt16 (some writers put 16-bit values
  /// there); 5 and 105 are handles although 5 lies in the string range.
  enum ValueType {
    kInvalidCode = 0, ///< a code no DXF range defines
    kString,
    kDouble,
    kInt16,
    kInt32,
    kInt64,
    kBool,
    kHandle,
    kBinary
  };
  static ValueType valueType(int groupCode);

  OdDbDxfItemFiler();
  ~OdDbDxfItemFiler() override;

  /// Empties the item list and starts writing. db is what database() reports; ids are written
  /// by their handles whatever it is.
  void openForWrite(OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// Starts writing straight into text: each item goes to the end of out as the two lines an
  /// ASCII DXF file holds for it (the code right-aligned in three columns, then the value in
  /// UTF-8), with no item list kept. The drawing-file writer prints this way, so a large
  /// drawing costs no per-item allocation. The checks and the status are those of
  /// openForWrite(); out must stay alive until the next open.
  void openForText(std::string* out, OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// Starts reading a copy of items from the first one. With a database, rdObjectId resolves
  /// handles through it (making ids for handles it does not know yet, as forward references
  /// of a file being read need); without one ids come back null.
  void openForRead(const ItemArray& items, OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// The same, taking the items over instead of copying them.
  void openForRead(ItemArray&& items, OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// Switches to reading what was written, from the first item, and clears the status.
  void rewind();
  bool isReading() const { return m_reading; }

  const ItemArray& items() const { return m_items; }

  /// Layers and linetypes in the order the drawing file lists them, for values that number
  /// table records (proxy graphics). The drawing writer sets them once for the whole file and
  /// they are kept across opens, so such values need not walk the tables for every object.
  /// Empty arrays (the default) mean "not given": the database's order is used instead.
  void setTableOrders(const OdDbObjectIdArray& layers, const OdDbObjectIdArray& linetypes);
  const OdDbObjectIdArray& layerOrder() const { return m_layerOrder; }
  const OdDbObjectIdArray& linetypeOrder() const { return m_linetypeOrder; }
  /// Different after every setTableOrders() on any filer of the process, 0 before the first:
  /// what lets a writer that keeps orders between objects tell new orders from the last ones.
  OdUInt64 tableOrdersSerial() const { return m_tableOrdersSerial; }

  /// Significant digits of doubles written with kDfltPrec; clamped to 1..kMaxPrec.
  void setPrecision(int precision);
  void setIncludesDefaultValues(bool include) { m_includesDefaults = include; }

  // OdDbFiler
  OdDbDatabase* database() const override { return m_database; }
  FilerType filerType() const override { return m_filerType; }
  OdResult filerStatus() const override { return m_status; }
  void resetFilerStatus() override { m_status = eOk; }

  // OdDbDxfFiler
  int nextItem() override;
  /// Only one level: a second push-back before the next nextItem() does nothing, because the
  /// filer remembers only the item nextItem() returned last.
  void pushBackItem() override;
  bool atEOF() override;
  /// The marker name is compared exactly (subclass names are case-sensitive in DXF).
  bool atSubclassData(const OdString& subClassName) override;
  /// True at the end of the items or when the next item is a group 0 (the next object).
  bool atEndOfObject() override;

  /// The text of the current item, whatever its code; binary data held as bytes reads as
  /// upper-case hex.
  OdString rdString() override;
  /// Only "0" and "1" are booleans.
  bool rdBool() override;
  OdInt8 rdInt8() override;
  OdInt16 rdInt16() override;
  OdInt32 rdInt32() override;
  OdInt64 rdInt64() override;
  double rdDouble() override;
  /// A point starts at the current item (x at code c) and takes y from the item at c + 10
  /// after it, which must be there. A z at c + 20 right after y is read by the 3D forms and
  /// skipped by the 2D forms; a missing z reads as 0. On failure value is left unchanged.
  void rdPoint2d(OdGePoint2d& value) override;
  void rdPoint3d(OdGePoint3d& value) override;
  void rdVector2d(OdGeVector2d& value) override;
  void rdVector3d(OdGeVector3d& value) override;
  /// Hex of up to 16 digits in either letter case.
  OdDbHandle rdHandle() override;
  OdDbObjectId rdObjectId() override;
  /// Either letter case; an odd number of digits or a non-hex character appends nothing.
  void rdBinaryChunk(OdUInt8Array& data) override;

  void wrString(int groupCode, const OdString& value) override;
  void wrBool(int groupCode, bool value) override;
  void wrInt8(int groupCode, OdInt8 value) override;
  void wrInt16(int groupCode, OdInt16 value) override;
  void wrInt32(int groupCode, OdInt32 value) override;
  void wrInt64(int groupCode, OdInt64 value) override;
  void wrDouble(int groupCode, double value, int precision = kDfltPrec) override;
  /// The point forms need doubles at every code they write (c, c + 10 and c + 20).
  void wrPoint2d(int groupCode, const OdGePoint2d& value, int precision = kDfltPrec) override;
  void wrPoint3d(int groupCode, const OdGePoint3d& value, int precision = kDfltPrec) override;
  void wrVector2d(int groupCode, const OdGeVector2d& value, int precision = kDfltPrec) override;
  void wrVector3d(int groupCode, const OdGeVector3d& value, int precision = kDfltPrec) override;
  void wrHandle(int groupCode, const OdDbHandle& value) override;
  void wrObjectId(int groupCode, const OdDbObjectId& id) override;
  void wrSubclassMarker(const OdString& subClassName) override;
  /// Zero bytes write no item.
  void wrBinaryChunk(int groupCode, const OdUInt8* buffer, OdUInt32 numBytes) override;

  int precision() const override { return m_precision; }
  bool includesDefaultValues() const override { return m_includesDefaults; }

  /// Bytes per binary item, the most a DXF binary line may carry.
  static constexpr OdUInt32 kMaxBinaryChunkBytes = 127;

private:
  void fail(OdResult status);
  bool canWrite();
  /// The current item when there is one and the filer is reading, else null (status set).
  const Item* current();
  bool readSigned(OdInt64 min, OdInt64 max, OdInt64& value);
  bool readCoordinates(int count, int optionalCount, double* coords);
  bool writeInteger(int groupCode, OdInt64 value);
  bool writeCoordinates(int groupCode, const double* coords, int count, int precision);
  void append(int groupCode, const OdString& value);
  /// Appends an item whose value is plain ASCII text (a number, a handle, hex digits).
  void appendAscii(int groupCode, const char* text, std::size_t size);
  void appendCode(int groupCode);
  /// The text of a double into buffer (at least 32 characters); returns its length.
  std::size_t formatDouble(double value, int precision, char* buffer) const;

  static constexpr std::size_t kNoItem = static_cast<std::size_t>(-1);

  ItemArray m_items;
  /// Where openForText() writes, or null when items are kept.
  std::string* m_text = nullptr;
  std::size_t m_next = 0;
  /// Index of the item nextItem() returned last, or kNoItem.
  std::size_t m_current = kNoItem;
  OdDbDatabase* m_database = nullptr;
  FilerType m_filerType = kFileFiler;
  OdResult m_status = eOk;
  bool m_reading = false;
  int m_precision = kMaxPrec;
  bool m_includesDefaults = false;
  OdDbObjectIdArray m_layerOrder;
  OdDbObjectIdArray m_linetypeOrder;
  OdUInt64 m_tableOrdersSerial = 0;
};

#endif
