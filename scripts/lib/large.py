#!/usr/bin/env python3
"""large.py SHAPE: prints a description that is larger than any camera's. SHAPE: bytes (64 MB of registers and features), groups
(200,000 inside one another), features (100,000 in one item of a page), items (100,000 on a page)."""
import sys

COUNT = 100_000
SIZE = 64 * 1024 * 1024
VALUE_MARK = "{B57D3000-0AC6-4819-A609-272A33140ACA}"


def mark(kind, number):
    return f"<Extension><ZEL{kind}GUID>{{3F6A2B10-5C1E-4D77-9A40-8E2C{number:08X}}}</ZEL{kind}GUID></Extension>"


def feature(name, extension):
    return f'<Integer Name="{name}">{extension}<Value>1</Value><Min>0</Min><Max>100</Max></Integer>'


def page(inside):
    return (f'<Category Name="Root"><pFeature>Page</pFeature></Category>'
            f'<Category Name="Page"><DisplayName>Special</DisplayName>{inside}</Category>')


def listed(prefix):
    return "".join(f"<pFeature>{prefix}{at}</pFeature>" for at in range(COUNT))


def of_bytes():
    parts, size = [], 0
    while size < SIZE:
        name = f"Feature{len(parts)}"
        part = (f'<IntReg Name="{name}Reg"><Address>{4 * len(parts)}</Address><Length>4</Length><AccessMode>RW</AccessMode>'
                f"<pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>"
                f'<Integer Name="{name}"><pValue>{name}Reg</pValue><Min>0</Min><Max>100</Max></Integer>')
        parts.append(part)
        size += len(part)
    return "".join(parts)


def of_groups():
    return "<Group>" * (2 * COUNT) + feature("Inmost", "") + "</Group>" * (2 * COUNT)


def of_features():
    item = f'<Category Name="Item">{mark("Item", 0)}{listed("Feature")}</Category>'
    return page("<pFeature>Item</pFeature>") + item + "".join(
        feature(f"Feature{at}", mark("Element", at)) for at in range(COUNT))


def of_items():
    value = f"<Extension><ZELElementGUID>{VALUE_MARK}</ZELElementGUID></Extension>"
    return page(listed("Item")) + "".join(
        f'<Category Name="Item{at}">{mark("Item", at)}<pFeature>Feature{at}</pFeature></Category>' +
        feature(f"Feature{at}", value) for at in range(COUNT))


shapes = {"bytes": of_bytes, "groups": of_groups, "features": of_features, "items": of_items}
print('<RegisterDescription ModelName="Large">' + shapes[sys.argv[1]]() + '<Port Name="Device"/></RegisterDescription>')
