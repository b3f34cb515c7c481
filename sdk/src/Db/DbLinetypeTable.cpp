#include "DbLinetypeTable.h"

#include "DbFiler.h"

#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbLinetypeTableRecord, OdDbSymbolTableRecord, OD_T("LTYPE"))
ODRX_CONS_DEFINE_MEMBERS(OdDbLinetypeTable, OdDbSymbolTable, OD_T("TABLE"))

OdRxClass* OdDbLinetypeTable::recordClass() const { return OdDbLinetypeTableRecord::desc(); }

namespace {
/// A linetype holds at most this many dashes in a drawing file (its count is one byte).
const int kMaxDashes = 255;
} // namespace

OdString OdDbLinetypeTableRecord::comments() const {
  assertReadEnabled();
  return m_comments;
}
void OdDbLinetypeTableRecord::setComments(const OdString& comments) {
  assertWriteEnabled();
  m_comments = comments;
}
double OdDbLinetypeTableRecord::patternLength() const {
  assertReadEnabled();
  double length = 0.0;
  for (double dash : m_dashes)
    length += std::fabs(dash);
  return length;
}
int OdDbLinetypeTableRecord::numDashes() const {
  assertReadEnabled();
  return static_cast<int>(m_dashes.size());
}
void OdDbLinetypeTableRecord::setNumDashes(int count) {
  if (count < 0 || count > kMaxDashes)
    throw OdError(eInvalidInput, OD_T("A linetype has 0 to 255 dashes"));
  assertWriteEnabled();
  m_dashes.resize(static_cast<unsigned>(count), 0.0);
}
double OdDbLinetypeTableRecord::dashLengthAt(int index) const {
  assertReadEnabled();
  if (index < 0)
    throw OdError_InvalidIndex();
  return m_dashes.at(static_cast<unsigned>(index));
}
void OdDbLinetypeTableRecord::setDashLengthAt(int index, double length) {
  if (index < 0)
    throw OdError_InvalidIndex();
  if (!std::isfinite(length))
    throw OdError(eInvalidInput, OD_T("A dash length must be a number"));
  assertWriteEnabled();
  m_dashes.setAt(static_cast<unsigned>(index), length);
}
bool OdDbLinetypeTableRecord::isScaledToFit() const {
  assertReadEnabled();
  return m_scaledToFit;
}
void OdDbLinetypeTableRecord::setIsScaledToFit(bool scaledToFit) {
  assertWriteEnabled();
  m_scaledToFit = scaledToFit;
}

OdResult OdDbLinetypeTableRecord::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbSymbolTableRecord::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdString comments = filer->rdString();
  const bool scaledToFit = filer->rdBool();
  const int count = filer->rdUInt8();
  OdGeDoubleArray dashes;
  for (int i = 0; i < count && filer->filerStatus() == eOk; ++i)
    dashes.append(filer->rdDouble());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  for (double dash : dashes)
    if (!std::isfinite(dash))
      return eDwgObjectImproperlyRead;
  m_comments = comments;
  m_scaledToFit = scaledToFit;
  m_dashes = dashes;
  return eOk;
}

void OdDbLinetypeTableRecord::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbSymbolTableRecord::dwgOutFields(filer);
  filer->wrString(m_comments);
  filer->wrBool(m_scaledToFit);
  filer->wrUInt8(static_cast<OdUInt8>(m_dashes.size()));
  for (double dash : m_dashes)
    filer->wrDouble(dash);
}
