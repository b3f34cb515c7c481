#include "CoorDimExtensions.h"

#include "MenuTables.h"

#include <cmath>

namespace {

using custents::PropertyGroup;

const char16_t* const kDisplayName = u"坐标标注";
const char16_t* const kGroupCaption = u"标注属性";
/// Heights below this are ignored by the dimension base; the page refuses them instead.
const double kMinTextHeight = 9.9e-9;

OdString fixed4(double value) {
  OdString text;
  text.format(OD_T("%.4f"), value);
  return text;
}

OdString pointText(const OdGePoint3d& point) {
  return OdString(OD_T("X=")) + fixed4(point.x) + OdString(OD_T(" Y=")) + fixed4(point.y) +
         OdString(OD_T(" Z=")) + fixed4(point.z);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Older coordinate dimension

OdString OdDbCoorDimPropertyPE::getEntityName(const OdDbEntity*) {
  return OdString(kDisplayName);
}

bool OdDbCoorDimPropertyPE::GetRMenus(std::vector<EntMenuData>& menus) {
  custents::appendHostMenus(vdimMenus, menus);
  return true;
}

OdString OdDbCoorDimPropertyPE::GetListInfo(OdDbEntity* entity) {
  OdDbDimCoorPtr dim = castEntity(entity);
  if (dim.isNull())
    return OdString();
  OdString text(OD_T("坐标标注:"));
  text += PropertyPE::GetListInfo(entity);
  text += OD_T("\n类型:坐标");
  text += OdString(OD_T("\n定义点:")) + pointText(dim->getDimPt());
  text += OdString(OD_T("\n起始点:")) + pointText(dim->getStartPt());
  return text;
}

const std::vector<PropertyGroup<OdDbDimCoor>>& OdDbCoorDimPropertyPE::groups() const {
  static const std::vector<PropertyGroup<OdDbDimCoor>> groups = {
      {kGroupCaption,
       {
           {u"X标注内容", u"修改X标注内容", OdVariant::kString, 0,
            [](const OdDbDimCoor& d) { return OdVariant(d.getXText()); },
            [](OdDbDimCoor& d, const OdVariant& v) {
              d.setXText(v.getString());
              return true;
            }},
           {u"Y标注内容", u"修改Y标注内容", OdVariant::kString, 0,
            [](const OdDbDimCoor& d) { return OdVariant(d.getYText()); },
            [](OdDbDimCoor& d, const OdVariant& v) {
              d.setYText(v.getString());
              return true;
            }},
       }}};
  return groups;
}

// ---------------------------------------------------------------------------------------------
// Newer coordinate dimension

OdString OdDbNewCoorDimPropertyPE::getEntityName(const OdDbEntity*) {
  return OdString(kDisplayName);
}

bool OdDbNewCoorDimPropertyPE::GetRMenus(std::vector<EntMenuData>& menus) {
  custents::appendHostMenus(vdimMenus, menus);
  return true;
}

const std::vector<PropertyGroup<OdDbNewDimCoor>>& OdDbNewCoorDimPropertyPE::groups() const {
  static const std::vector<PropertyGroup<OdDbNewDimCoor>> groups = {
      {kGroupCaption,
       {
           {u"文字颜色", u"修改文字颜色", OdVariant::kInt32, 1,
            [](const OdDbNewDimCoor& d) { return OdVariant(d.getXTextObj()->color().color()); },
            [](OdDbNewDimCoor& d, const OdVariant& v) {
              OdCmColor color;
              if (color.setColor(static_cast<OdUInt32>(v.getInt32())) != eOk)
                return false;
              // One colour for all texts; a null text tells the dimension to colour them all.
              OdDbMTextPtr all;
              d.setColorText(all, color);
              return true;
            }},
           {u"X标注内容", u"修改X标注内容", OdVariant::kString, 0,
            [](const OdDbNewDimCoor& d) { return OdVariant(d.getXTextObj()->contents()); },
            [](OdDbNewDimCoor& d, const OdVariant& v) {
              d.setXtext(v.getString());
              return true;
            }},
           {u"Y标注内容", u"修改Y标注内容", OdVariant::kString, 0,
            [](const OdDbNewDimCoor& d) { return OdVariant(d.getYTextObj()->contents()); },
            [](OdDbNewDimCoor& d, const OdVariant& v) {
              d.setYtext(v.getString());
              return true;
            }},
           {u"文字大小", u"修改文字大小", OdVariant::kDouble, 0,
            [](const OdDbNewDimCoor& d) { return OdVariant(d.getXTextObj()->textHeight()); },
            [](OdDbNewDimCoor& d, const OdVariant& v) {
              const double height = v.getDouble();
              if (!std::isfinite(height) || height < kMinTextHeight)
                return false;
              d.setTextHeight(height);
              return true;
            }},
       }}};
  return groups;
}
