// Keys that records are indexed and listed by: their forms for sorting and for display, their
// distinct part, and the escape language of displayed keys.
#pragma once

#include "automation/variant.h"
#include "interfaces.h"

namespace qv::text {

// How one field of a key is sorted.
struct QvtSortTable {
  Text Table;
  Integer SortFlags = 0;
};

// The weighing itself works on the bytes of the code page. As a zero-terminated service would, each
// takes the text up to its first character 0 and gives back what comes before the first character 0
// of the result. A table is taken whole: its first character stands for character 0.
void Key_Sort(Text& Key, Integer SortFlag, const Text& Table);
void Mask_Display(Text& Key);
void Mask_Sort(Text& Key);
void XLate(Text& sString, const Text& Table);

void TranslKeySort(Text& Key, Integer SortFlag, const Text& Table, Variant& Distinct);
void TranslKeyDisplay(Text& Key);
// True = failure, told by the error state; KeyValue then holds what follows the field that failed.
Boolean TranslDelimKey(Text& KeyValue, const Object<_kwCollection>& SortTables);
// Run-time error 13 at an escaped "h"; what stands before it is translated by then.
void TranslMetaKey(Text& Buffer, const Variant& EscRemove);

void DistinctAppend(Text& Key, const Text& Distinct);
void DistinctSplit(Text& Key, Text& Distinct);

}  // namespace qv::text
