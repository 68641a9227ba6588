"""How gdb shows the strings, containers and unit records of basutl and TuvoUtil.

gdb reads this file by itself when a program loads basutl, where it is installed under that library's name; in a build
folder: source tools/debugger/printers.py
"""

import functools

import gdb
import gdb.printing


def narrow(field):
    """A char* or a char[] up to its NUL, without the bytes behind it; "" for null."""
    if field.type.strip_typedefs().code == gdb.TYPE_CODE_PTR and int(field) == 0:
        return ""
    return field.string(errors="replace")


def printed(name, number):
    return f"{name} ({number})"


def up_to_damage(children):
    """Ends children where memory cannot be read, so that damage hides nothing but itself."""
    @functools.wraps(children)
    def readable(printer):
        try:
            for name, value in children(printer):
                value.fetch_lazy()
                yield name, value
        except gdb.MemoryError as error:
            yield "damaged", f"<{error}>"
    return readable


class StringPrinter:
    """BuString: its text, as that of any other string."""

    def __init__(self, value):
        self.text = value["m_text"]

    def to_string(self):
        length = int(self.text["_M_string_length"])
        if length > 0x7FFFFFFF:
            raise gdb.MemoryError("no text: damaged, or not constructed yet")
        return self.text["_M_dataplus"]["_M_p"].lazy_string(length=length)

    def display_hint(self):
        return "string"


class ArrayPrinter:
    """BuObjectArrayTempl and what derives from it: the items."""

    def __init__(self, value):
        self.value = value
        self.count = int(value["m_count"])

    def to_string(self):
        return f"{self.value.type.strip_typedefs().name} with {self.count} of {int(self.value['m_capacity'])} items"

    @up_to_damage
    def children(self):
        for index in range(self.count):
            yield f"[{index}]", self.value["m_items"][index]

    def display_hint(self):
        return "array"


class TreeItemPrinter:
    """BuTreeItemTempl: its data and its children."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{self.value.type.strip_typedefs().name} with {int(self.value['m_count'])} children"

    @up_to_damage
    def children(self):
        yield "data", self.value["m_data"]
        node, index = self.value["m_head"], 0
        while int(node) != 0 and index < int(self.value["m_count"]):
            yield f"[{index}]", node["item"].dereference()
            node, index = node["next"], index + 1


class ErrorPrinter:
    """BuErrObj: its kind, its code when it carries one, its message."""

    KINDS = ("plain", "information", "warning", "error", "fatal error")

    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = int(self.value["m_kind"])
        name = self.KINDS[kind] if 0 <= kind < len(self.KINDS) else f"kind {kind}"
        return name + (f" {int(self.value['m_code'])}" if self.value["m_hasCode"] else "")

    @up_to_damage
    def children(self):
        yield "message", self.value["m_message"]


class BaseUnitPrinter:
    """_UnitBaseTypeStr: mm (12): length, 1000 of it make one reference unit."""

    KINDS = ("length", "mass", "time", "heat", "constant")

    def __init__(self, value):
        self.value = value

    def to_string(self):
        kind = int(self.value["baseType"])
        text = printed(narrow(self.value["abbreviation"]), int(self.value["id"])) + ": "
        text += self.KINDS[kind] if 0 <= kind < len(self.KINDS) else f"base type {kind}"
        text += f", {float(self.value['conversionValue']):.15g} of it make one reference unit"
        offset = float(self.value["additiveValue"])
        return text + (f", offset {offset:.15g}" if offset != 0.0 else "")


class UnitSystemPrinter:
    """_UnitSystemStr: mm-ton-sec-kelvin (5): base units 12, 31, 44, 52."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        units = ", ".join(str(int(self.value[quantity + "Unit"])) for quantity in ("length", "mass", "time", "heat"))
        return printed(narrow(self.value["name"]), int(self.value["id"])) + ": base units " + units


class DisplayUnitPrinter:
    """_UnitDisplayUnitStr: MPa in system 5."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{narrow(self.value['unitName'])} in system {int(self.value['systemId'])}"


class DataTypePrinter:
    """_UnitDataTypeStr: Pressure (20): length^-1 mass^1 time^-2, with its display units."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        powers = {name: int(self.value[name + "Exponent"]) for name in ("length", "mass", "time", "heat")}
        dimension = " ".join(f"{name}^{power}" for name, power in powers.items() if power != 0) or "no dimension"
        text = printed(narrow(self.value["name"]), int(self.value["id"])) + ": " + dimension
        if int(self.value["hasMultiplier"]) != 0:
            text += f", multiplier {float(self.value['multiplier']):.15g}"
        return text

    @up_to_damage
    def children(self):
        for index in range(int(self.value["displayUnitCount"])):
            yield f"[{index}]", self.value["displayUnits"][index]


class CataloguePrinter:
    """VUnit: its records."""

    LISTS = (("baseUnits", "baseUnitCount"), ("systems", "systemCount"), ("dataTypes", "dataTypeCount"))

    def __init__(self, value):
        self.value = value

    def to_string(self):
        counts = ", ".join(f"{int(self.value['m_' + count])} {records}" for records, count in self.LISTS)
        return f"{counts}, current system {int(self.value['m_currentSystem'])}"

    @up_to_damage
    def children(self):
        for records, count in self.LISTS:
            for index in range(int(self.value["m_" + count])):
                yield f"{records}[{index}]", self.value["m_" + records][index]


PRINTERS = {
    "BuString": StringPrinter,
    "Bu(ObjectArrayTempl|ArrayTempl|TemplateArray)<.*>": ArrayPrinter,
    "BuTreeItemTempl<.*>": TreeItemPrinter,
    "BuErrObj": ErrorPrinter,
    "_UnitBaseTypeStr": BaseUnitPrinter,
    "_UnitSystemStr": UnitSystemPrinter,
    "_UnitDisplayUnitStr": DisplayUnitPrinter,
    "_UnitDataTypeStr": DataTypePrinter,
    "VUnit": CataloguePrinter,
}


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("TuvoUtil")
    for pattern, printer in PRINTERS.items():
        printers.add_printer(pattern, f"^{pattern}$", printer)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
