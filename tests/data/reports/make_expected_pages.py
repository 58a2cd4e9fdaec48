#!/usr/bin/env python3
"""Makes the expected report pages of this folder, without the program.

The input is typed in again by hand, the arithmetic is decimal with 60 digits, and the pages are put together
cell by cell. What a reader of each page must see is written beside it as <page>.seen.txt (UTF-8): the lines
above the table, then one line for each row, the cells separated by " | ". A cell that spans columns ends in
" [n columns]", coloured text in " [green]", a shaded cell in " [silver]" or " [#DDDDDD]", and a line break
within a cell is " / ". The empty pages have no such file.

    python3 make_expected_pages.py
"""

import html as html_escapes
import os
import re
from decimal import Decimal as D, ROUND_HALF_EVEN, getcontext

getcontext().prec = 60
HERE = os.path.dirname(os.path.abspath(__file__))

COMPANY = "Chantier Ørsted & Fils, été"
LOCATION = "Saint-Malo (€)"
NAMES = ["-", "Styrène", "MMA", "-", "Acetone", "Cobalt"]
MONTHS = ["4/2004", "5/2004", "6/2004", "7/2004", "8/2004", "9/2004", "10/2004", "11/2004", "12/2004", "1/2005",
          "2/2005", "3/2005"]
START, END = "04/2004", "03/2005"

# type, method, HAP limit, coefficient, exponent, emission limit
AFTER, WITHOUT = "(Vacuum bagging after roll-out)", "(Vacuum bagging without roll-out)"
TYPES = [
    ("Production resin", "Spray", "28", "0.014", "2.425", "46"),
    ("Production resin", "Spray " + AFTER, "30", "0.01185", "2.425", "46"),
    ("Production resin", "Spray " + WITHOUT, "33", "0.00945", "2.425", "46"),
    ("Production resin", "Non-Spray", "35", "0.014", "2.275", "46"),
    ("Production resin", "Non-spray " + AFTER, "39", "0.011", "2.275", "46"),
    ("Production resin", "Non-spray " + WITHOUT, "46", "0.0076", "2.275", "46"),
    ("Production resin", "Closed Molding", "-1", "0", "0", "46"),
    ("Pigmented production gel", "All", "33", "0.445", "1.675", "159"),
    ("Clear production gel coat", "All", "48", "0.445", "1.675", "291"),
    ("Tooling resin", "Spray", "30", "0.014", "2.425", "54"),
    ("Tooling resin", "Spray " + AFTER, "30", "0.01185", "2.425", "54"),
    ("Tooling resin", "Spray " + WITHOUT, "33", "0.00945", "2.425", "54"),
    ("Tooling resin", "Non-Spray", "39", "0.014", "2.275", "54"),
    ("Tooling resin", "Non-spray " + AFTER, "39", "0.011", "2.275", "54"),
    ("Tooling resin", "Non-spray " + WITHOUT, "46", "0.0076", "2.275", "54"),
    ("Tooling gel coat", "All", "40", "0.445", "1.675", "214"),
    ("Production resin (Filled)", "Spray", "28", "0.014", "2.425", "46"),
    ("Production resin (Filled)", "Spray " + AFTER, "30", "0.01185", "2.425", "46"),
    ("Production resin (Filled)", "Spray " + WITHOUT, "33", "0.00945", "2.425", "46"),
    ("Production resin (Filled)", "Non-Spray", "35", "0.014", "2.275", "46"),
    ("Production resin (Filled)", "Non-spray " + AFTER, "39", "0.011", "2.275", "46"),
    ("Production resin (Filled)", "Non-spray " + WITHOUT, "46", "0.0076", "2.275", "46"),
    ("Production resin (Filled)", "Closed Molding", "-1", "0", "0", "46"),
    ("Tooling resin (Filled)", "Spray", "30", "0.014", "2.425", "54"),
    ("Tooling resin (Filled)", "Spray " + AFTER, "30", "0.01185", "2.425", "54"),
    ("Tooling resin (Filled)", "Spray " + WITHOUT, "33", "0.00945", "2.425", "54"),
    ("Tooling resin (Filled)", "Non-Spray", "39", "0.014", "2.275", "54"),
    ("Tooling resin (Filled)", "Non-spray " + AFTER, "39", "0.011", "2.275", "54"),
    ("Tooling resin (Filled)", "Non-spray " + WITHOUT, "46", "0.0076", "2.275", "54"),
]
# The order in which the types are reported, sorted by hand.
SORTED_TYPES = ["Clear production gel coat", "Pigmented production gel", "Production resin",
                "Production resin (Filled)", "Tooling gel coat", "Tooling resin", "Tooling resin (Filled)"]

# number, Material ID, description, type and method as the type table has them, density, HAP content,
# pollutant contents, pollutant factors; number 7 is deleted
NONE = "0 0 0 0 0 0"
MATERIALS = [
    (1, "PR-100", "General purpose resin", "Production resin", "Spray", "9.2", "35", "1.5 10 0 3 20 0.5",
     "100 50 0 7 12.5 1"),
    (2, "PR-200é", "Résine", "Production resin", "Spray", "9.5", "27.5", "0 12 0 3 0 0", "0 100 0 7 0 0"),
    (3, "GC-Ø1", "Gel coat at its limit", "Pigmented production gel", "All", "10.5", "33", "0 30 5 0 0 0",
     "0 45 45 0 0 0"),
    (4, "GC <b>7", "Clear & bright", "Clear production gel coat", "All", "9", "48.1", NONE, NONE),
    (5, "CM-1", "Closed molding resin", "Production resin", "Closed Molding", "9", "55", "0 40 0 0 0 0",
     "0 3 0 0 0 0"),
    (6, "FR-1", "Filled resin", "Production resin (Filled)", "Non-Spray", "11", "30", "0 30 0 0 0 0", "0 20 0 0 0 0"),
    (8, "TR-€", "Tooling resin", "Tooling resin", "Non-Spray", "8.75", "38.9", "0 0 0 0 0.1 2.25",
     "0 0 0 0 100 66.6"),
    (9, "XX-1", "Of no type in the table", "Putty", "Spray", "12", "5", "0 1 0 0 0 0", "0 1 0 0 0 0"),
    (10, "TG-1", "Used before the period only", "Tooling gel coat", "All", "10", "40", "0 30 0 0 0 0",
     "0 30 0 0 0 0"),
    (11, "PR-300", "Much styrene", "Production resin", "Spray", "9", "31.25", "0 42 0 0 0 0", "0 85 0 0 0 0"),
]

# material, month, quantity, unit; without the deleted record (material 1, 8/2004, 9999 lbs)
USAGE = [
    (1, "4/2004", "1.5", "Mgal"),
    (1, "5/2004", "250.5", "lbs"),
    (2, "3/2005", "4000", "lbs"),
    (3, "12/2004", "0.75", "Mgal"),
    (4, "1/2005", "1234.5", "lbs"),
    (5, "5/2004", "900", "lbs"),
    (6, "6/2004", "2", "Mgal"),
    (7, "7/2004", "500", "lbs"),
    (8, "9/2004", "0.333", "Mgal"),
    (9, "10/2004", "100", "lbs"),
    (10, "3/2004", "700", "lbs"),
    (4, "03/2005", "5000", "lbs"),
    (1, "3/2005", "0.1", "lbs"),
    (99, "4/2004", "10", "lbs"),
    (11, "11/2004", "8.5", "Mgal"),
]


def rounded(number, decimals):
    return number.quantize(D(1).scaleb(-decimals), rounding=ROUND_HALF_EVEN)


def text(number):
    """Without trailing zeros; no number here is long enough to need an exponent or to be cut."""
    plain = format(number.normalize(), "f")
    assert len(plain.replace(".", "").lstrip("0")) <= 15, plain
    return plain


def pounds_used(material):
    pounds = D(0)
    for number, month, quantity, unit in USAGE:
        if number == material[0] and month in MONTHS:
            pounds += D(quantity) * D(material[5]) * 1000 if unit == "Mgal" else D(quantity)
    return pounds


# The pages.

def company_lines():
    return ("<div align='center'><font face='Verdana' size='3'><b><u>" + COMPANY + "</u></b></font><br>"
            "<font face='Verdana' size='1'>" + LOCATION + "</font><br><br>")


def title_lines(title, period):
    return ("<font face='Verdana' size='2'><b>" + title + "</b></font><br>"
            "<font face='Verdana' size='1'><b>" + period + "</b></font><br><br>")


TABLE = "<table cellspacing='0' cellpadding='3' border='1' bordercolor='black'>"
VERDANA = "<font face='Verdana' size='1'>"
NO_RECORD = ("<tr><td colspan='5' align='center'><font face='Verdana' size='1'><b><br>No record found</br></b></font>"
             "</td></tr>")
END_OF_PAGE = "</table></div></body></html>"


def seen_text(inner):
    """What a reader sees of a cell's content: no tags, blanks run together."""
    inner = inner.replace("<br>", "\n").replace("&nbsp;", " ")
    inner = html_escapes.unescape(re.sub("<[^>]*>", "", inner))
    lines = [" ".join(line.split()) for line in inner.split("\n")]
    return " / ".join(lines)


class Page:
    def __init__(self, head, title, period, table=TABLE):
        self.html = head + company_lines() + title_lines(title, period) + table
        self.seen = [COMPANY, LOCATION, title, seen_text(period)]

    def row(self, *cells):
        """Each cell: the attributes of its td ("" = none), its HTML, then what is seen besides its text."""
        self.html += "<tr>"
        line = []
        for cell in cells:
            attributes, inner, remarks = cell[0], cell[1], cell[2:]
            self.html += "<td" + attributes + ">" + inner + "</td>"
            line.append(" ".join([seen_text(inner)] + ["[" + remark + "]" for remark in remarks]).strip())
        self.html += "</tr>"
        self.seen.append(" | ".join(line))

    def save(self, name):
        if "empty" in name:
            self.html += NO_RECORD
        with open(os.path.join(HERE, name), "wb") as page:
            page.write((self.html + END_OF_PAGE + "\r\n").encode("cp1252"))
        if "empty" in name:
            return
        with open(os.path.join(HERE, name + ".seen.txt"), "wb") as seen:
            seen.write(("\n".join(self.seen) + "\n").encode("utf-8"))


def grey_header(*titles):
    return [(" align='center' bgcolor='#DDDDDD'", VERDANA + "<b>" + title + "</b></font>", "#DDDDDD")
            for title in titles]


# Compliant materials

LEFT_TOP, CENTER_TOP = " align='left' valign='top'", " align='center' valign='top'"
YES, NO = "<font color='green'>Yes</font>", "<font color='red'>No</font>"


def compliant_page(period):
    page = Page("<html><title>Compliant Materials Report</title><body>", "COMPLIANT MATERIALS REPORT", period)
    page.row(*grey_header("Material ID", "Material Type/Application Method", "HAP Content", "HAP Limit",
                          "Compliant"))
    return page


def compliant_row(page, number, content, limit, answer):
    material = [m for m in MATERIALS if m[0] == number][0]
    colour = "green" if answer == "Yes" else "red"
    page.row((LEFT_TOP, VERDANA + material[1] + " - " + material[2] + "</font>"),
             (LEFT_TOP, VERDANA + material[3] + "/" + material[4] + "</font>"),
             (CENTER_TOP, VERDANA + content + "</font>"),
             (CENTER_TOP, VERDANA + limit + "</font>"),
             (CENTER_TOP, VERDANA + (YES if answer == "Yes" else NO) + "</font>", colour))


# material: HAP content, limit, answer, all worked out by hand
JUDGED = {
    1: ("35", "28", "No"),
    2: ("27.5", "28", "Yes"),
    3: ("33", "33", "Yes"),
    4: ("48.1", "48", "No"),
    5: ("55", "No Limit", "Yes"),
    6: ("30", "35", "Yes"),
    8: ("38.9", "39", "Yes"),
    10: ("40", "40", "Yes"),
    11: ("31.25", "28", "No"),
}


def make_compliant_pages():
    everything = compliant_page("<u>All Materials</u>")
    for number in [1, 2, 3, 4, 5, 6, 8, 10, 11]:
        compliant_row(everything, number, *JUDGED[number])
    everything.save("report_all.htm")

    used_line = "Materials used from <u>04/2004</u> to <u>03/2005</u>"
    used = compliant_page(used_line)
    for number in [1, 1, 2, 3, 4, 5, 6, 8, 1, 11]:
        compliant_row(used, number, *JUDGED[number])
    used.save("report.htm")

    for name, line in [("report_all_empty.htm", "<u>All Materials</u>"), ("report_empty.htm", used_line)]:
        compliant_page(line).save(name)


# Weighted average

def make_weighted_page():
    page = Page("<html><head><title>Weighted-Average HAP Content Report</title></head><body>",
                "WEIGHTED-AVERAGE HAP CONTENT REPORT", "From <u>" + START + "</u> To <u>" + END + "</u>")
    page.row((" bgcolor='silver' align='center'", VERDANA + "<b>Application Method</b></font>", "silver"),
             *[(" bgcolor='silver'", VERDANA + "<b>" + title + "</b></font>", "silver")
               for title in ["Amount Used<br>(kg/year)(A)", "HAP Limit", "HAP Content<br>[(B/A)*100]",
                             "Compliant"]])
    for name in SORTED_TYPES:
        if "(Filled)" in name:
            continue
        page.row((" colspan='6' bgcolor='#DDDDDD'", VERDANA + "Material : " + name + "</font>", "6 columns",
                  "#DDDDDD"))
        for row in TYPES:
            if row[0] != name or row[1] == "Closed Molding":
                continue
            amount = hap = D(0)
            for material in MATERIALS:
                if material[3:5] == row[0:2]:
                    used = rounded(pounds_used(material) / D("2.2046"), 2)
                    amount += used
                    hap += used * D(material[6]) / 100
            content = rounded(hap / amount * 100, 2) if amount and hap else D(0)
            answer, colour = ("Yes", "green") if content <= D(row[2]) else ("No", "red")
            center = " align='center'"
            page.row(("", VERDANA + row[1] + "</font>"),
                     (center, VERDANA + text(rounded(amount / 1000, 3)) + "</font>"),
                     (center, VERDANA + row[2] + "</font>"),
                     (center, VERDANA + text(content) + "</font>"),
                     (center, "<font face='Verdana' size='1' color='" + colour + "'>" + answer + "</font>", colour))
    page.save("report2.htm")


# Emission average

def make_emission_average_page():
    page = Page("<html><head><style type='text/css'>td{font-family: Verdana;font-size: 10px;} "
                "td.hl{font-weight: bold;}</style><title>Emission-Average HAP Content Report</title></head><body>",
                "EMISSION-AVERAGE HAP CONTENT REPORT", "From <u>" + START + "</u> To <u>" + END + "</u>")
    page.row(*[(" bgcolor='silver' align='center'", VERDANA + "<b>" + title + "</b></font>", "silver")
               for title in ["Application Method", "HAP Content<br>(%)", "(A)<br>Point Values<br>(Kg/Mg)",
                             "(B)<br>Amount Used<br>(kg/yr)", "(A x B)<br>PV HAP Emissions<br>(kg/yr)"]])
    total = allowance = D(0)
    for name in SORTED_TYPES:
        page.row((" colspan='5' bgcolor='#DDDDDD'", VERDANA + "Material : " + name + "</font>", "5 columns",
                  "#DDDDDD"))
        for row in TYPES:
            if row[0] != name or row[1] == "Closed Molding":
                continue
            amount = emission = D(0)
            for material in MATERIALS:
                if material[3:5] != row[0:2]:
                    continue
                value = rounded(D(row[3]) * D(material[6]) ** D(row[4]), 2)
                used = rounded(pounds_used(material) / D("2.2046") / 1000, 2)
                amount += used
                emission += value * used
                page.row(("", row[1] + " (Material ID:" + material[1].ljust(100) + ")"), ("", material[6]),
                         ("", text(value)), ("", text(used)), ("", text(rounded(value * used, 2))))
            label = (" class='hl' colspan=3", row[1] + " (TOTAL)", "3 columns")
            if amount:
                page.row(label, (" class='hl'", text(amount)), (" class='hl'", text(emission)))
            else:
                page.row(label, (" colspan=2", " Not Used", "2 columns"))
            total += emission
            allowance += amount * D(row[5])
    answer, colour = ("Yes", "green") if total <= allowance else ("No", "red")
    right = " colspan='4' align='right'"
    for label, number in [("Total PV HAP Emissions (kg/yr)  ", total), ("HAP Limit (kg/yr)  ", allowance)]:
        page.row((right, VERDANA + "<b>" + label + "</font>", "4 columns"),
                 (" align='center'", VERDANA + text(rounded(number, 2)) + "</font>"))
    page.row((right, VERDANA + "<b>Compliant ?  </font>", "4 columns"),
             (" align='center'", "<font color='" + colour + "'>" + answer + "</font>", colour))
    page.save("report3.htm")


# Additional pollutants

USED_LINE = "Materials used from <u>" + START + "</u> to <u>" + END + "</u>"


def usage_page():
    page = Page("<html><title>Additional HAP Usage Report</title><body>", "ADDITIONAL HAP(s) USAGE REPORT", USED_LINE)
    page.row(*grey_header("Material ID", "Quantity (lb)", "HAP", "HAP Content (w%)", "Emission Factor"))
    return page


def emission_page():
    page = Page("<html><title>Additional HAP(s) Emission Report</title><body>", "ADDITIONAL HAP(s) EMISSION REPORT",
                USED_LINE, "<table cellspacing='0' cellpadding='3' border='1' bordercolor='black' >")
    page.row(*grey_header("HAP", "HAP Emission (kg/12 months)"))
    return page


def cell(attributes, content):
    return (attributes, VERDANA + content + "<font>")


def make_additional_usage_pages():
    page = usage_page()
    for material in MATERIALS:
        pounds = pounds_used(material)
        if pounds == 0:
            continue
        contents, factors = material[7].split(), material[8].split()
        for slot in [0, 1, 2, 4, 5]:  # 0 although its name is "-"; 3 is left out
            material_cells = [cell(LEFT_TOP, material[1]), cell(CENTER_TOP, text(pounds))]
            if slot > 0:
                material_cells = [("", "&nbsp;"), ("", "&nbsp;")]
            page.row(*material_cells, cell(LEFT_TOP, NAMES[slot]), cell(CENTER_TOP, contents[slot]),
                     cell(CENTER_TOP, factors[slot]))
    page.save("report4.htm")
    usage_page().save("report4_empty.htm")


def make_additional_emission_pages():
    page = emission_page()
    sum_of_totals = D(0)
    for slot in [1, 2, 4, 5]:
        total = D(0)
        for material in MATERIALS:
            kilograms = rounded(pounds_used(material) / D("2.2046"), 2)
            content, factor = D(material[7].split()[slot]), D(material[8].split()[slot])
            total += rounded(content / 100 * kilograms * (factor / 100), 0)
        sum_of_totals += total
        page.row(cell(CENTER_TOP, NAMES[slot]), cell(CENTER_TOP, format(total, ",.2f")))
    page.row(cell(" align='right' valign='top'", "<b>Total</b>"),
             cell(CENTER_TOP, "<b>" + format(sum_of_totals, ",.2f") + "</b>"))
    page.save("report5.htm")
    emission_page().save("report5_empty.htm")


make_compliant_pages()
make_weighted_page()
make_emission_average_page()
make_additional_usage_pages()
make_additional_emission_pages()
