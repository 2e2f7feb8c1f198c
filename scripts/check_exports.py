#!/usr/bin/env python3
"""Fails when libtov_utils.so exports a symbol that is not public API.

Every defined dynamic symbol (nm -D, demangled) must belong to a class, function or variable that a public
header declares (tov/utils/*.h and tov/utils/debugger/*.h, with their .inl), or match one of the reasoned
exceptions below. Private classes (impl, details) stay hidden; the tests reach them through the static
libraries of the subsystems instead.
    scripts/check_exports.py build/tov/libtov_utils.so tov/utils
"""
import glob
import os
import re
import subprocess
import sys

# What is exported although no public header declares it, and why. Each entry must still match a symbol,
# so the list cannot outlive its reason.
EXCEPTIONS = [
    # Public templates of Property.inl and TypeManager.inl call these in the host's code for the built-in
    # value types; the specializations are defined in the library.
    (r"^tov::utils::details::getClassTypeId<", "details::getClassTypeId of the built-in types"),
    # TypeManager::registerProperty (TypeManager.inl) adds the property to its owner's metadata in the
    # host's code.
    (r"^tov::utils::details::TypeMetadata::", "details::TypeMetadata"),
    # Property::setAccessors (Property.inl) makes a details::MemberPropertyHolder<Owner, Value> in the
    # host's code: its bases' constructors, destructors, vtables and type information come from here.
    (r"^tov::utils::details::(Abstract)?PropertyHolder\b", "details::PropertyHolder and its base"),
    # libstdc++'s templates instantiated in the library (a std::deque of AbstractContext*, std::to_chars
    # ...): namespace std has default visibility, so the compiler exports them; how many depends on what
    # it inlines (a Debug build exports more).
    (r"^(std|__gnu_cxx)::", "libstdc++'s instantiations"),
]

PREFIXES = ("vtable for ", "typeinfo for ", "typeinfo name for ", "VTT for ", "guard variable for ",
            "non-virtual thunk to ", "virtual thunk to ", "covariant return thunk to ")
NAMESPACES = {"tov", "utils", "debugger", "error", "type", "tov_utils"}
PRIVATE_NAMESPACES = {"impl", "details"}


def spell_operators(text):
    """Operators whose spelling holds < or > renamed, so that only template arguments open and close."""
    names = {"<<=": "shl_assign", ">>=": "shr_assign", "<<": "shl", ">>": "shr", "<=": "le", ">=": "ge",
             "->*": "arrow_star", "->": "arrow", "<": "lt", ">": "gt"}
    return re.sub(r"\boperator\s*(<<=|>>=|<<|>>|<=|>=|->\*|->|<|>)", lambda m: "operator_" + names[m.group(1)],
                  text)


def outside_brackets(text, opening="<", closing=">"):
    """The positions and characters of text that stand outside any bracket pair."""
    depth = 0
    for i, c in enumerate(text):
        if c in opening:
            depth += 1
        elif c in closing:
            depth -= 1
        elif depth == 0:
            yield i, c


def top_level_split(name):
    """The components of a qualified name, split at the :: outside template arguments and parentheses."""
    cuts = [i for i, c in outside_brackets(name, "<(", ">)") if name.startswith("::", i)]
    starts = [0] + [cut + 2 for cut in cuts]
    ends = cuts + [len(name)]
    return [name[start:end] for start, end in zip(starts, ends)]


def qualified_name(symbol):
    """The qualified name of a demangled symbol, without its parameters, return type or kind."""
    for prefix in PREFIXES:
        if symbol.startswith(prefix):
            symbol = symbol[len(prefix):]
    opening = [i for i, c in outside_brackets(symbol) if c == "(" and not symbol[:i].endswith("operator")]
    if opening:
        symbol = symbol[:opening[0]]
    # A template function's name comes after its return type: keep what follows the last space outside
    # template arguments, with "operator" when the name is a conversion or "operator new".
    spaces = [i for i, c in outside_brackets(symbol) if c == " " and not symbol[:i].endswith("operator")]
    return symbol[spaces[-1] + 1:] if spaces else symbol


def public_names(utils):
    headers = []
    for folder in (utils, os.path.join(utils, "debugger")):
        headers += glob.glob(os.path.join(folder, "*.h")) + glob.glob(os.path.join(folder, "*.inl"))
    names = set()
    for header in headers:
        with open(header, encoding="utf-8") as f:
            text = spell_operators(re.sub(r"//[^\n]*", "", f.read()))
        names.update(re.findall(r"\b(?:class|struct)\s+(?:TOV_UTILS_API\s+)?(\w+)\s*(?:final\s*)?[:{]", text))
        names.update(re.findall(r"\benum\s+(?:class\s+)?(\w+)", text))
        names.update(re.findall(r"\b(\w+)\s*\(", text))
        names.update(re.findall(r"\bextern\b[^;(]*?\b(\w+)\s*;", text))
    return names


def main():
    library, utils = sys.argv[1], sys.argv[2]
    output = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True,
                            text=True).stdout
    mangled = [line.split(" ", 2)[2] for line in output.splitlines() if line.count(" ") >= 2]
    # AddressSanitizer adds an indicator beside each global (__odr_asan.<global>): it stands for its global.
    mangled = [re.sub(r"^__odr_asan[.]", "", symbol) for symbol in mangled]
    symbols = subprocess.run(["c++filt"], input="\n".join(mangled), check=True, capture_output=True,
                             text=True).stdout.splitlines()
    names = public_names(utils)
    used = set()
    strays = []
    for symbol in symbols:
        name = qualified_name(spell_operators(symbol))
        exception = next((pattern for pattern, _ in EXCEPTIONS if re.search(pattern, name)), None)
        if exception:
            used.add(exception)
            continue
        parts = [re.sub(r"<.*>$", "", part) for part in top_level_split(name)]
        while len(parts) > 1 and parts[0] in NAMESPACES:
            parts.pop(0)
        if parts[0] in PRIVATE_NAMESPACES or parts[0] not in names:
            strays.append(symbol)
    status = 0
    if strays:
        print("exported but declared in no public header:\n  " + "\n  ".join(sorted(strays)))
        status = 1
    stale = [reason for pattern, reason in EXCEPTIONS if pattern not in used]
    if stale:
        print("exceptions that no exported symbol needs any more: " + ", ".join(stale))
        status = 1
    if status == 0:
        print(f"{len(symbols)} exported symbols, all public API or one of {len(EXCEPTIONS)} exceptions")
    return status


if __name__ == "__main__":
    sys.exit(main())
