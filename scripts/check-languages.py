#!/usr/bin/env python3
"""Compares src/suite/languages/languages.tsv with its sources and reports every difference.

  scripts/check-languages.py [LOCALE.NLS [WINNT.H [ISO-CODES FOLDER]]]

Needs the Debian packages wine, mingw-w64-common (or mingw-w64-x86-64-dev) and iso-codes. The build does not run it.
The exit code is 1 when there is a difference that is not listed below as decided.
"""
import json
import re
import struct
import sys
import unicodedata
from pathlib import Path

TABLE = Path(__file__).resolve().parent.parent / "src/suite/languages/languages.tsv"
NO_IDENTIFIER = 0x1000
NO_CODE_PAGE = 65001

# Where the table differs from Wine's. The head of languages.tsv gives the reasons.
DECIDED_CODES = {"ES-ES_TRADNL": "ES-ES-TRADNL"}
DECIDED_ROWS = {"SR-CYRL-CS", "SR-LATN-CS", "TZM-TFNG", "TZM-TFNG-MA"}
DECIDED_NAMES = {"PRS", "PRS-AF", "CA-ES-VALENCIA", "ES-ES-TRADNL", "NB", "NB-NO", "NB-SJ", "NN", "NN-NO"}
DECIDED_SCRIPTS = {"BM": "Latn", "CCP": "Cakm", "JA": "Jpan", "KO": "Kore", "SHI": "Tfng", "VAI": "Vaii", "YUE": "Hant"}
# In winnt.h only: Tibetan as spoken in Bhutan, which Windows has given up for Dzongkha with its own identifier.
DECIDED_IDENTIFIERS = {0x0851}
# Languages and regions that Unicode and ISO name by different words. Each was checked to be the same one.
DECIDED_WORDS = {
    "BAS": "Basaa", "FF": "Fula", "KSH": "Colognian", "NAQ": "Nama", "OR": "Odia", "TO": "Tongan", "YRL": "Nheengatu",
    "YUE": "Cantonese", "-BQ": "Caribbean Netherlands", "-PS": "Palestinian Territories", "-RU": "Russia",
    "-TR": "Turkey",
}  # fmt: skip
# UN M.49 areas, which ISO 3166 does not have, and regions that it reserves or leaves to others.
AREAS = {"001": "world", "029": "Caribbean", "150": "Europe", "419": "Latin America"}
RESERVED = {"XK": "Kosovo", "DG": "Diego Garcia", "EA": "Ceuta & Melilla", "IC": "Canary Islands"}


class Row:
    def __init__(self, line):
        fields = line.split("\t")
        self.code, self.name, self.script = fields[0], fields[4], fields[3]
        self.lcid, self.code_page = int(fields[1], 16), int(fields[2])
        self.tags = fields[5].split() if len(fields) > 5 else []


def read_table():
    lines = TABLE.read_text(encoding="utf-8").splitlines()
    return {row.code: row for row in map(Row, (line for line in lines if not line.startswith("#")))}


class Nls:
    """locale.nls: tables of fixed records, their texts as offsets into one pool of counted UTF-16 texts."""

    def __init__(self, path):
        self.data = Path(path).read_bytes()
        self.base = struct.unpack_from("<I", self.data, 16)[0]
        _, count, size = struct.unpack_from("<3H", self.data, self.base + 30)
        locales, name_count, _, names = struct.unpack_from("<4I", self.data, self.base + 36)
        self.texts = self.base + struct.unpack_from("<I", self.data, self.base + 64)[0]
        records = [self.base + locales + i * size for i in range(count)]
        self.locales = {}
        for at in records:
            name = self.text(at)
            if not name:
                continue  # the invariant locale
            self.locales[name.upper()] = {
                "lcid": struct.unpack_from("<H", self.data, at + 0x08)[0],
                "code_page": struct.unpack_from("<H", self.data, at + 0x6E)[0],
                "parent": self.text(at + 0xB8).upper(),
                "name": self.text(at + 0xEC),
                "scripts": [script for script in self.text(at + 0x12C).split(";") if script],
            }
        self.aliases = {}  # every name that Windows accepts: the locale's own
        for i in range(name_count):
            offset, index = struct.unpack_from("<2H", self.data, self.base + names + 8 * i)
            self.aliases[self.pool(offset).upper()] = self.text(records[index]).upper()

    def pool(self, offset):
        at = self.texts + 2 * offset
        length = struct.unpack_from("<H", self.data, at)[0]
        return self.data[at + 2 : at + 2 + 2 * length].decode("utf-16le")

    def text(self, at):
        return self.pool(struct.unpack_from("<I", self.data, at)[0])


def expected_code_page(row, rows):
    """That of the nearest locale which has one, which the row is a variant of, and which is in the same script."""
    return next(
        (
            rows[parent].code_page
            for parent in parents(row.code)
            if parent in rows and rows[parent].script == row.script and rows[parent].code_page != NO_CODE_PAGE
        ),
        NO_CODE_PAGE,
    )


def parents(code):
    while "-" in code:
        code = code.rpartition("-")[0]
        yield code


def check_table(rows):
    by_name, by_lcid, by_tag = {}, {}, {code: code for code in rows}
    for row in rows.values():
        if (other := by_name.setdefault(row.name, row.code)) != row.code:
            yield f"{row.code}: has the name of {other}"
        if row.lcid != NO_IDENTIFIER and (other := by_lcid.setdefault(row.lcid, row.code)) != row.code:
            yield f"{row.code}: has the identifier of {other}"
        for tag in row.tags:
            if (other := by_tag.setdefault(tag, row.code)) != row.code:
                yield f"{row.code}: has the tag {tag} of {other}"


def check_nls(rows, nls):
    for name, locale in nls.locales.items():
        code = DECIDED_CODES.get(name, name)
        row = rows.get(code)
        if row is None:
            yield f"{code}: is missing ({locale['name']})"
            continue
        if row.lcid != locale["lcid"]:
            yield f"{code}: identifier {row.lcid:#06x}, not {locale['lcid']:#06x}"
        code_page = locale["code_page"]
        if code_page == NO_CODE_PAGE:
            code_page = expected_code_page(row, rows)
        if row.code_page != code_page:
            yield f"{code}: code page {row.code_page}, not {code_page}"
        if row.name != locale["name"] and code not in DECIDED_NAMES:
            yield f'{code}: name "{row.name}", not "{locale["name"]}"'
        if row.script not in locale["scripts"] and DECIDED_SCRIPTS.get(code) != row.script:
            yield f"{code}: script {row.script}, not {' or '.join(locale['scripts'])}"
    for row in rows.values():
        own = {DECIDED_CODES.get(name, name) for name in nls.locales}
        if row.code not in own and row.code not in DECIDED_ROWS:
            yield f"{row.code}: is not in it"
        for tag in row.tags:
            known = nls.aliases.get(tag)
            if known is not None and DECIDED_CODES.get(known, known) != row.code:
                yield f"{row.code}: {tag} is {known}"


def check_winnt(rows, header):
    constants = {}
    for name, value in re.findall(r"^#define ((?:SUB)?LANG_\w+)\s+(0x[0-9a-fA-F]+)", header, re.MULTILINE):
        constants[name] = int(value, 16)
    languages = {name[5:]: value for name, value in constants.items() if name.startswith("LANG_") and value}
    identifiers = {row.lcid: row.code for row in rows.values()}
    compared = 0
    for name, value in constants.items():
        if not name.startswith("SUBLANG_"):
            continue
        words = name[8:].split("_")
        language = next(
            (known for n in range(len(words), 0, -1) if (known := "_".join(words[:n])) in languages), None
        )
        if language is None or languages[language] > 0x3FF:
            continue
        lcid = value << 10 | languages[language]
        compared += 1
        if lcid not in identifiers and lcid not in DECIDED_IDENTIFIERS:
            yield f"{name}: {lcid:#06x} is missing"
    for name, value in languages.items():
        if name not in ("INVARIANT", "NEUTRAL"):
            compared += 1
            if value not in identifiers:
                yield f"LANG_{name}: {value:#06x} is missing"
    if compared < 300:
        yield f"only {compared} constants were understood"


def words_of(text):
    plain = "".join(c for c in unicodedata.normalize("NFKD", text) if not unicodedata.combining(c)).lower()
    return set(re.findall(r"[a-z]+", plain))


def check_iso(rows, folder):
    def load(number):
        return json.loads((Path(folder) / f"iso_{number}.json").read_text(encoding="utf-8"))[number]

    languages, scripts, regions = {}, {}, {}
    for number, keys in (("639-3", ("alpha_2", "alpha_3")), ("639-2", ("alpha_2", "alpha_3"))):
        for entry in load(number):
            for key in keys:
                if key in entry:
                    languages.setdefault(entry[key].upper(), []).append(entry)
    for entry in load("15924"):
        scripts[entry["alpha_4"]] = entry
    for number in ("3166-3", "3166-1"):
        for entry in load(number):
            regions[entry["alpha_2"]] = entry
    variants = set()
    for row in rows.values():
        language, *rest = row.code.split("-")
        if language not in languages:
            yield f"{row.code}: {language} is no language of ISO 639"
        elif not rest:
            names = " ".join(entry.get(key, "") for entry in languages[language] for key in ("name", "common_name"))
            if not words_of(row.name) & words_of(names) and DECIDED_WORDS.get(row.code) != row.name:
                yield f'{row.code}: name "{row.name}", not "{languages[language][0]["name"]}"'
        if row.script not in scripts:
            yield f"{row.code}: {row.script} is no script of ISO 15924"
        for part in rest:
            if len(part) == 4 and part.isalpha():
                if part.title() != row.script:
                    yield f"{row.code}: script {row.script}"
            elif part in AREAS or part in RESERVED:
                if (AREAS.get(part) or RESERVED[part]) not in row.name:
                    yield f'{row.code}: name "{row.name}", not {AREAS.get(part) or RESERVED[part]}'
            elif part in regions:
                names = " ".join(regions[part].get(key, "") for key in ("name", "common_name", "official_name"))
                shown = row.name.partition("(")[2]
                known = words_of(names) - {"and", "of", "the", "islands", "republic"}
                if not words_of(shown) & known and DECIDED_WORDS.get("-" + part, "?") not in shown:
                    yield f'{row.code}: name "{row.name}", not "{regions[part]["name"]}"'
            elif len(part) == 2:
                yield f"{row.code}: {part} is no region of ISO 3166"
            else:
                variants.add(part)
    if variants != {"VALENCIA", "TRADNL"}:
        yield f"variants: {', '.join(sorted(variants))}"


def main():
    defaults = ["/usr/share/wine/nls/locale.nls", "/usr/share/mingw-w64/include/winnt.h", "/usr/share/iso-codes/json"]
    nls, winnt, iso = sys.argv[1:4] + defaults[len(sys.argv) - 1 :]
    rows = read_table()
    print(f"{len(rows)} languages")
    differs = False
    for source, differences in (
        (TABLE.name, check_table(rows)),
        (nls, check_nls(rows, Nls(nls))),
        (winnt, check_winnt(rows, Path(winnt).read_text(encoding="latin-1"))),
        (iso, check_iso(rows, iso)),
    ):
        found = list(differences)
        differs = differs or bool(found)
        print(f"{source}: {len(found)} differences")
        for difference in found:
            print(f"  {difference}")
    return 1 if differs else 0


if __name__ == "__main__":
    sys.exit(main())
