#pragma once

#include "items/item_contract.h"

namespace ZELAdapterHelper {

// The factories of the built-in items (see ItemFactory). Each stores null where the filter lacks what its
// item needs.

void MakeUVCExposure(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeExposureItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCGain(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakePartialScan(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCGPIO(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCStrobe(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCTrigger(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCColorEnhancement(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeUVCWhiteBalance(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);
void MakeFocusItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);

}  // namespace ZELAdapterHelper
