#!/usr/bin/env python3
"""Writes resources/samples/building.pvd: a small building plan (units mm)."""
import json, math, os

handles = iter(range(1, 100000))
def h():
    return format(next(handles), "X")

T = {"layers": h(), "linetypes": h(), "blocks": h()}
D = {"namedObjects": h()}
for role, key in [("layouts", "LAYOUTS"), ("plotSettings", "PLOTSETTINGS"), ("plotStyles", "PLOTSTYLENAMES"),
                  ("materials", "MATERIALS"), ("layerStates", "LAYERSTATES")]:
    D[role] = {"h": h(), "key": key}

lt = {}
linetypes = []
for name, desc, pattern in [("ByBlock", "", None), ("ByLayer", "", None), ("Continuous", "Solid line", None),
                            ("DASHED", "Dashed __ __ __", [12.7, -6.35]),
                            ("CENTER", "Center ____ _ ____", [31.75, -6.35, 6.35, -6.35]),
                            ("HIDDEN", "Hidden __ __ __", [6.35, -3.175])]:
    lt[name] = h()
    rec = {"h": lt[name], "name": name}
    if desc: rec["description"] = desc
    if pattern: rec["pattern"] = pattern
    linetypes.append(rec)

ps = {}
plotStyles = []
for name in ["Normal", "Thick", "Thin", "Dashed"]:
    ps[name] = h()
    plotStyles.append({"h": ps[name], "name": name})
materials = [{"h": h(), "name": n} for n in ["ByLayer", "ByBlock", "Global"]]

LAYERS = [  # name, colour, linetype, lineweight, plot style, description, extra
    ("0", 7, "Continuous", -3, "Normal", "", {}),
    ("A-WALL", 7, "Continuous", 50, "Thick", "Walls", {}),
    ("A-DOOR", 3, "Continuous", 25, "Normal", "Doors", {}),
    ("A-GLAZ", {"rgb": [0, 170, 255]}, "Continuous", 18, "Thin", "Windows and glazing", {}),
    ("A-FURN", 8, "Continuous", 13, "Thin", "Furniture", {"transparency": {"alpha": 178}}),
    ("S-COLS", 5, "Continuous", 35, "Thick", "Structural columns", {}),
    ("S-GRID", 8, "CENTER", 13, "Thin", "Structural grid", {}),
    ("E-LITE", 2, "Continuous", 18, "Normal", "Lighting", {}),
    ("E-POWR", {"rgb": [187, 30, 16], "book": "RAL CLASSIC", "name": "RAL 3020"}, "Continuous", 18, "Normal",
     "Power outlets", {}),
    ("M-HVAC", 30, "DASHED", 25, "Dashed", "Heating, ventilation, ducts", {}),
    ("P-PLUMB", 140, "HIDDEN", 25, "Normal", "Plumbing", {}),
    ("A-ANNO-TEXT", 2, "Continuous", 18, "Normal", "Room names and notes", {}),
    ("A-ANNO-DIMS", 3, "Continuous", 13, "Thin", "Dimensions", {}),
    ("DEFPOINTS", 7, "Continuous", -3, "Normal", "Definition points (never plotted)", {"plottable": False}),
    ("VIEWPORTS", 9, "Continuous", -3, "Normal", "Viewport frames", {"plottable": False}),
]
L = {}
layers = []
def add_layer(name, colour, ltype, lw, style, desc, extra):
    L[name] = h()
    rec = {"h": L[name], "name": name}
    rec.update(extra)
    if colour != 7: rec["color"] = colour
    if ltype != "Continuous": rec["linetype"] = lt[ltype]
    if lw != -3: rec["lineweight"] = lw
    rec["plotStyle"] = ps[style]
    if desc: rec["description"] = desc
    layers.append(rec)
for spec in LAYERS:
    add_layer(*spec)

def ent(t, layer, **kw):
    e = {"t": t, "h": h()}
    if layer != "0": e["l"] = L[layer]
    e.update(kw)
    return e

def rect(x0, y0, x1, y1):
    return [[x0, y0], [x1, y0], [x1, y1], [x0, y1]]

B = {name: h() for name in ["*Model_Space", "*Paper_Space", "*Paper_Space1", "DOOR", "TITLE"]}
LO = {name: h() for name in ["Model", "A1 Plan", "A3 Detail"]}
half_pi = math.pi / 2

model = [
    ent("polyline", "A-WALL", v=rect(0, 0, 20000, 12000), closed=True),
    ent("polyline", "A-WALL", v=rect(200, 200, 19800, 11800), closed=True),
    ent("line", "A-WALL", s=[8000, 200], e=[8000, 11800]),
    ent("line", "A-WALL", s=[8000, 6000], e=[19800, 6000]),
    ent("insert", "A-DOOR", b=B["DOOR"], p=[3000, 0]),
    ent("insert", "A-DOOR", b=B["DOOR"], p=[8000, 3000], rot=half_pi),
    ent("insert", "A-DOOR", b=B["DOOR"], p=[12000, 6000]),
    ent("polyline", "A-GLAZ", v=rect(2000, 11800, 5000, 12000), closed=True),
    ent("polyline", "A-GLAZ", v=rect(12000, 0, 16000, 200), closed=True),
    ent("polyline", "A-FURN", v=rect(2500, 2500, 5500, 4000), closed=True),
    ent("polyline", "A-FURN", v=rect(15000, 8000, 17000, 10000), closed=True),
]
for x in (0, 8000, 20000):
    for y in (0, 6000, 12000):
        model.append(ent("circle", "S-COLS", p=[x, y], r=150))
for x, label in ((0, "A"), (8000, "B"), (20000, "C")):
    model.append(ent("line", "S-GRID", s=[x, -1500], e=[x, 13500]))
    model.append(ent("text", "S-GRID", p=[x, -2500], txt=label, ht=400))
for y, label in ((0, "1"), (6000, "2"), (12000, "3")):
    model.append(ent("line", "S-GRID", s=[-1500, y], e=[21500, y]))
    model.append(ent("text", "S-GRID", p=[-2500, y], txt=label, ht=400))
for x, y in ((4000, 9000), (14000, 3000), (14000, 9000)):
    model.append(ent("circle", "E-LITE", p=[x, y], r=200))
for x, y in ((200, 3000), (7800, 9000), (19800, 3000)):
    model.append(ent("point", "E-POWR", p=[x, y]))
model += [
    ent("polyline", "M-HVAC", v=[[1000, 11000], [19000, 11000]], w=50),
    ent("circle", "P-PLUMB", p=[18500, 1000], r=250),
    ent("line", "P-PLUMB", s=[18500, 750], e=[18500, 200]),
    ent("text", "A-ANNO-TEXT", p=[3000, 6000], txt="LIVING", ht=350),
    ent("text", "A-ANNO-TEXT", p=[13000, 3000], txt="KITCHEN", ht=350),
    ent("text", "A-ANNO-TEXT", p=[13000, 9000], txt="BEDROOM", ht=350),
    ent("line", "A-ANNO-DIMS", s=[0, -800], e=[20000, -800]),
    ent("text", "A-ANNO-DIMS", p=[10000, -700], txt="20000", ht=250),
    ent("point", "DEFPOINTS", p=[0, -800]),
    ent("point", "DEFPOINTS", p=[20000, -800]),
]

door = [ent("line", "0", s=[0, 0], e=[0, 900]),
        ent("arc", "0", p=[0, 0], r=900, sa=0, ea=half_pi)]
title = [ent("polyline", "0", v=rect(0, 0, 180, 60), closed=True)]
for tag, prompt, x, y in (("PROJECT", "Project name", 5, 45), ("DRAWN_BY", "Drawn by", 5, 30),
                          ("DATE", "Date", 5, 15), ("SHEET", "Sheet number", 120, 15)):
    title.append(ent("attdef", "0", p=[x, y], txt="", ht=5, tag=tag, prompt=prompt))

def title_ref(x, y, sheet):
    values = {"PROJECT": "Riverside House", "DRAWN_BY": "PAVO", "DATE": "2024-05-01", "SHEET": sheet}
    pos = {"PROJECT": (5, 45), "DRAWN_BY": (5, 30), "DATE": (5, 15), "SHEET": (120, 15)}
    r = ent("insert", "0", b=B["TITLE"], p=[x, y])
    r["attribs"] = [{"h": h(), "p": [x + pos[t][0], y + pos[t][1]], "txt": v, "ht": 5, "tag": t}
                    for t, v in values.items()]
    return r

def viewport(n, p, w, ht, vc, vh, frozen=()):
    e = ent("viewport", "VIEWPORTS", p=p, w=w, ht=ht, n=n, vc=vc, vh=vh)
    if frozen: e["fl"] = [L[x] for x in frozen]
    return e

a1 = [viewport(1, [420.5, 297], 841, 594, [420.5, 297], 594),
      viewport(2, [380, 320], 640, 420, [10000, 6000], 16000),
      viewport(3, [740, 420], 160, 120, [4000, 9000], 4000, frozen=["A-FURN"]),
      title_ref(651, 10, "A-101")]
a3 = [viewport(1, [210, 148.5], 420, 297, [210, 148.5], 297),
      viewport(2, [200, 170], 360, 240, [14000, 3000], 6000, frozen=["E-POWR", "M-HVAC"]),
      title_ref(230, 10, "A-501")]
# The walls show red and heavier in the kitchen detail.
for rec in layers:
    if rec["name"] == "A-WALL":
        rec["overrides"] = [{"viewport": a3[1]["h"], "color": 1, "lineweight": 70}]

blocks = [
    {"h": B["*Model_Space"], "name": "*Model_Space", "entities": model},
    {"h": B["*Paper_Space"], "name": "*Paper_Space", "entities": a1},
    {"h": B["*Paper_Space1"], "name": "*Paper_Space1", "entities": a3},
    {"h": B["DOOR"], "name": "DOOR", "comments": "Single door, 900 leaf, hinge at the origin", "entities": door},
    {"h": B["TITLE"], "name": "TITLE", "comments": "Title block 180 x 60", "entities": title},
]
layouts = [
    {"h": LO["Model"], "name": "Model", "tabOrder": 0, "block": B["*Model_Space"]},
    {"h": LO["A1 Plan"], "name": "A1 Plan", "tabOrder": 1, "block": B["*Paper_Space"],
     "styleSheet": "pavo-named.pst", "activeViewport": a1[1]["h"]},
    {"h": LO["A3 Detail"], "name": "A3 Detail", "tabOrder": 2, "block": B["*Paper_Space1"],
     "styleSheet": "monochrome-named.pst", "activeViewport": a3[1]["h"]},
]
structure_only = {"h": h(), "name": "Structure only", "mask": 0x7FF,
                  "description": "Only the structural grid and columns", "currentLayer": "0",
                  "layers": [{"name": r["name"], **({} if r["name"] in ("0", "S-COLS", "S-GRID") else {"off": True})}
                             for r in layers]}

# Layers in the states and with the names a user of the layer commands should
# try, with objects north of the house (y 14000 and up). Their handles come
# after every other one so that the rest of the drawing keeps its handles.
EXTRA_LAYERS = [
    ("A-DEMO", 1, "DASHED", -3, "Normal", "Walls to be demolished (off)", {"off": True}),
    ("A-FURN-OLD", 8, "Continuous", -3, "Normal", "Previous furniture (frozen)", {"frozen": True}),
    ("A-AREA", 4, "Continuous", -3, "Normal", "Room areas (locked)", {"locked": True}),
    ("A-SKETCH", 6, "Continuous", -3, "Normal", "", {"plottable": False}),
    ("SITE|BOUNDARY", 3, "Continuous", 35, "Normal", "Plot boundary from the site plan", {}),
    ("\u03a3\u03a7\u0395\u0394\u0399\u039f", 7, "Continuous", -3, "Normal", "Greek name", {}),
    ("\u041f\u041b\u0410\u041d-\u042d\u0422\u0410\u0416", 7, "Continuous", -3, "Normal", "Cyrillic name", {}),
    ("Fa\u00e7ade-\u00e9l\u00e9vation", 7, "Continuous", -3, "Normal", "Accented Latin name", {}),
    ("A-ANNO-NOTES-GENERAL-CONSTRUCTION", 2, "Continuous", -3, "Normal", "A name of 33 characters", {}),
    ("A[1]", 7, "Continuous", -3, "Normal", "Brackets in the name", {}),
    ("NOTE#1", 7, "Continuous", -3, "Normal", "A wildcard character in the name", {}),
]
for spec in EXTRA_LAYERS:
    add_layer(*spec)
model += [
    ent("line", "A-DEMO", s=[0, 14000], e=[4000, 14000]),
    ent("circle", "A-FURN-OLD", p=[6000, 14000], r=500),
    ent("text", "A-AREA", p=[8000, 14000], txt="118 m2", ht=350),
    ent("line", "A-SKETCH", s=[10000, 14000], e=[11000, 15000]),
    ent("polyline", "SITE|BOUNDARY", v=rect(-5000, -5000, 25000, 17000), closed=True),
    ent("point", "\u03a3\u03a7\u0395\u0394\u0399\u039f", p=[12000, 14000]),
    ent("point", "\u041f\u041b\u0410\u041d-\u042d\u0422\u0410\u0416", p=[13000, 14000]),
    ent("point", "Fa\u00e7ade-\u00e9l\u00e9vation", p=[14000, 14000]),
    ent("text", "A-ANNO-NOTES-GENERAL-CONSTRUCTION", p=[15000, 14000], txt="GENERAL NOTES", ht=250),
    ent("point", "A[1]", p=[18000, 14000]),
    ent("point", "NOTE#1", p=[19000, 14000]),
]

# Objects that no longer follow their layer, for SETBYLAYER: explicit
# colours, lineweights, linetypes, a transparency, a plot style and a
# material, ByBlock values outside any block, and a dining set whose block
# nests chairs drawn ByBlock. Their handles come after every other one, like
# the layers above.
def byblock(e):
    e.update(c="byblock", lt=lt["ByBlock"], lw=-2, tr="byblock")
    return e

B["CHAIR"], B["DINING"] = h(), h()
chair = [byblock(ent("polyline", "0", v=rect(0, 0, 450, 450), closed=True)),
         ent("line", "0", s=[0, 450], e=[450, 450], c="byblock", lw=-2)]
dining = [ent("polyline", "0", v=rect(0, 0, 1600, 900), closed=True, c=30, lw=35)]
for cx in (400, 1200):  # two chairs on each long side, backs away from the table
    for p, rot in (([cx + 225, -50], math.pi), ([cx - 225, 950], 0)):
        chair_ref = ent("insert", "0", b=B["CHAIR"], p=p, c="byblock", lw=-2)
        if rot: chair_ref["rot"] = rot
        dining.append(chair_ref)
blocks += [
    {"h": B["CHAIR"], "name": "CHAIR", "comments": "Dining chair 450 x 450, drawn ByBlock", "entities": chair},
    {"h": B["DINING"], "name": "DINING", "comments": "Table 1600 x 900 with four CHAIR references",
     "entities": dining},
]
model += [
    ent("insert", "A-FURN", b=B["DINING"], p=[9700, 3050], c=1, lw=35),
    ent("insert", "A-FURN", b=B["CHAIR"], p=[6000, 2800], c="byblock"),
    ent("line", "A-WALL", s=[18000, 6000], e=[18000, 7500], c=1, lw=70),
    ent("circle", "E-LITE", p=[17500, 10500], r=150, c={"rgb": [255, 200, 0]}, tr={"alpha": 128}),
    ent("polyline", "M-HVAC", v=[[13000, 11000], [13000, 9800]], w=50, lt=lt["Continuous"], lw=50,
        ps=ps["Thick"], m=materials[2]["h"]),
    ent("text", "A-ANNO-TEXT", p=[9700, 5000], txt="DINING", ht=250, c="byblock"),
]

drawing = {
    "format": "pavo-drawing", "version": 1,
    "header": {"clayer": L["0"], "celtype": lt["ByLayer"], "cecolor": "bylayer", "celweight": -1, "tilemode": 1,
               "pstylemode": 0, "measurement": 1, "extnames": 1, "ltscale": 1, "insunits": 4, "cvport": 2,
               "ctab": LO["A1 Plan"], "handseed": format(next(handles), "X")},
    "tables": T, "dictionaries": D, "linetypes": linetypes, "plotStyles": plotStyles, "materials": materials,
    "layers": layers, "blocks": blocks, "layouts": layouts, "layerStates": [structure_only],
}

out = os.path.join(os.path.dirname(__file__), "..", "resources", "samples", "building.pvd")
with open(out, "w", encoding="utf-8") as f:
    f.write("{\n" + ",\n".join('"%s": %s' % (k, json.dumps(v, separators=(",", ":"), ensure_ascii=False))
                                for k, v in drawing.items()) + "\n}\n")
