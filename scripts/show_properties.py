"""Reads a dump from standard input and prints the properties of its files and the units of its objects."""

import json
import sys


def shown(value):
    """A dump value as one line of text; an empty text for what is not specified."""
    if value is None:
        return ""
    if isinstance(value, str):
        return value.removeprefix("kUnitType_")
    if isinstance(value, dict):
        return ", ".join(f"{key} {shown(inner)}" for key, inner in value.items() if inner is not None)
    return json.dumps(value)


def print_rows(rows, indent):
    rows = [(name, text) for name, text in rows if text]
    width = max((len(name) for name, _ in rows), default=0)
    for name, text in rows:
        print(f"{indent}{name:<{width}}  {text}")


def print_properties(properties):
    custom = properties.get("CustomProperties") or []
    print_rows([(key, shown(value)) for key, value in properties.items()
                if key not in ("Class", "CustomProperties")], "  ")
    if custom:
        print("  CustomProperties")
        print_rows([(item["Name"], shown(item["Value"])) for item in custom], "    ")


def main():
    objects = json.load(sys.stdin)["Objects"]
    for name, item in objects.items():
        if item and item["Class"] == "IFile":
            print(f"file {item['Label']} ({name})")
            print_properties(item.get("FileProperties") or {})
    print("units")
    units = ("LengthUnit", "DisplayLengthUnit", "DisplayAngleUnit")
    print_rows([(f"{item['Class'][1:].lower()} {item['Label']}",
                 shown({unit: item[unit] for unit in units if item.get(unit)}))
                for item in objects.values()
                if item and item["Class"] in ("IFile", "IAssembly", "IPart")], "  ")


if __name__ == "__main__":
    main()
