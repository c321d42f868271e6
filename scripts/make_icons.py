#!/usr/bin/env python3
# Draws the program's icons: one flat palette, 24x24 view box, strokes on whole and half
# units so they stay crisp at 16 and 32 pixels. Run: scripts/make_icons.py resources/icons
import math, os, sys

OUT = sys.argv[1]
NAVY="#1F3A5F"; BLUE="#2F6FB3"; LBLUE="#8EC0EE"; GREEN="#2E9E5B"; LGREEN="#A8DDB5"
RED="#D64541"; ORANGE="#F2994A"; YELLOW="#F2C94C"; PURPLE="#7E57C2"; PAPER="#FFFFFF"
PAPER2="#E3E9F0"; GREY="#8A96A3"; DGREY="#5B6673"
O = f'stroke="{NAVY}" stroke-width="1.5" stroke-linejoin="round" stroke-linecap="round"'
def line(c, w=2): return f'fill="none" stroke="{c}" stroke-width="{w}" stroke-linecap="round" stroke-linejoin="round"'

def svg(body):
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24">\n'
            + body.strip() + '\n</svg>\n')

def gear(cx, cy, r_out, r_in, teeth):
    pts = []
    for i in range(teeth * 4):
        a = 2 * math.pi * i / (teeth * 4) - math.pi / 2
        r = r_out if (i % 4) in (1, 2) else r_in
        pts.append(f"{cx + r*math.cos(a):.2f},{cy + r*math.sin(a):.2f}")
    return " ".join(pts)

def page(x, y, w, h, fold=4, fill=PAPER):
    return (f'<path d="M{x} {y}h{w-fold}l{fold} {fold}v{h-fold}h{-w}z" fill="{fill}" {O}/>'
            f'<path d="M{x+w-fold} {y}v{fold}h{fold}" fill="none" {O}/>')

def envelope(x, y, w, h, fill=PAPER):
    return (f'<rect x="{x}" y="{y}" width="{w}" height="{h}" rx="1" fill="{fill}" {O}/>'
            f'<path d="M{x} {y}l{w/2} {h*0.6}l{w/2} {-h*0.6}" fill="none" {O}/>')

I = {}
I["exit"] = f'''
<path d="M3 3h10v18H3z" fill="{PAPER2}" {O}/>
<path d="M3 3l7 2.5v17.5L3 21z" fill="{BLUE}" {O}/>
<circle cx="8.3" cy="12.5" r="0.9" fill="{PAPER}"/>
<path d="M13.5 12h8M18 8.5l3.5 3.5-3.5 3.5" {line(RED, 2.4)}/>
'''
I["options"] = f'''
<polygon points="{gear(12,12,10.5,8,8)}" fill="{BLUE}" {O}/>
<circle cx="12" cy="12" r="3.2" fill="{PAPER}" {O}/>
'''
I["calc"] = f'''
<rect x="4" y="2" width="16" height="20" rx="2" fill="{NAVY}"/>
<rect x="6.5" y="4.5" width="11" height="4.5" rx="0.8" fill="{LGREEN}"/>
''' + "".join(f'<rect x="{6.5+c*4}" y="{11+r*3.6}" width="3" height="2.6" rx="0.6" fill="{ORANGE if c==2 else PAPER}"/>' for r in range(3) for c in range(3))
I["dialer"] = f'''
<path d="M3 18l2.5-8h14L21 18v2.5H3z" fill="{BLUE}" {O}/>
<path d="M2.5 8.5C4 4 20 4 21.5 8.5l-0.4 2.2h-4.3l-0.6-2.4c-2.5-0.9-6-0.9-8.4 0l-0.6 2.4H2.9z" fill="{NAVY}" {O}/>
''' + "".join(f'<circle cx="{9.5+c*2.5}" cy="{13.2+r*2.4}" r="0.9" fill="{PAPER}"/>' for r in range(2) for c in range(3))
I["web"] = f'''
<circle cx="12" cy="12" r="9.5" fill="{BLUE}" {O}/>
<ellipse cx="12" cy="12" rx="4" ry="9.5" {line(PAPER,1.3)}/>
<path d="M2.8 8.5h18.4M2.8 15.5h18.4M12 2.5v19" {line(PAPER,1.3)}/>
<circle cx="12" cy="12" r="9.5" fill="none" {O}/>
'''
I["tip"] = f'''
<path d="M12 2a7 7 0 0 0-4 12.7c.7.6 1 1.3 1 2.3h6c0-1 .3-1.7 1-2.3A7 7 0 0 0 12 2z" fill="{YELLOW}" {O}/>
<path d="M9 17.5h6v2.2a1.5 1.5 0 0 1-1.5 1.5h-3A1.5 1.5 0 0 1 9 19.7z" fill="{GREY}" {O}/>
<path d="M10 12.5l2-2 2 2M12 10.5v6" {line(ORANGE,1.3)}/>
'''
I["help"] = f'''
<circle cx="12" cy="12" r="9.5" fill="{BLUE}" {O}/>
<path d="M9 9.3a3 3 0 1 1 4.6 2.5c-1 .7-1.6 1.3-1.6 2.6" {line(PAPER,2.4)}/>
<circle cx="12" cy="17.6" r="1.4" fill="{PAPER}"/>
'''
I["save"] = f'''
<path d="M3 3h15l3 3v15H3z" fill="{BLUE}" {O}/>
<rect x="7" y="3" width="9" height="6" fill="{PAPER2}" {O}/>
<rect x="12.5" y="4.3" width="2" height="3.4" fill="{NAVY}"/>
<rect x="6" y="12.5" width="12" height="8.5" fill="{PAPER}" {O}/>
<path d="M8.5 15.5h7M8.5 18h7" {line(GREY,1.2)}/>
'''
I["print"] = f'''
<path d="M6.5 2.5h11v6h-11z" fill="{PAPER}" {O}/>
<rect x="2.5" y="8.5" width="19" height="9" rx="1.5" fill="{GREY}" {O}/>
<circle cx="18" cy="11.5" r="1" fill="{GREEN}"/>
<path d="M6.5 14.5h11v7h-11z" fill="{PAPER}" {O}/>
<path d="M8.5 17h7M8.5 19.3h5" {line(BLUE,1.2)}/>
'''
I["delete"] = f'''
<path d="M5 5l14 14M19 5L5 19" {line(NAVY,5.6)}/>
<path d="M5 5l14 14M19 5L5 19" {line(RED,3.4)}/>
'''
I["cut"] = f'''
<path d="M8 2.5l8.2 12.5M16 2.5L7.8 15" {line(NAVY,2.2)}/>
<circle cx="6.5" cy="18" r="3.3" fill="none" stroke="{RED}" stroke-width="2.2"/>
<circle cx="17.5" cy="18" r="3.3" fill="none" stroke="{RED}" stroke-width="2.2"/>
<circle cx="12" cy="9" r="0.9" fill="{PAPER}"/>
'''
I["copy"] = page(3, 2.5, 12, 15) + page(9, 6.5, 12, 15, fill=PAPER) + f'''
<path d="M11.5 12.5h6M11.5 15h7M11.5 17.5h5" {line(BLUE,1.2)}/>
'''
I["paste"] = f'''
<rect x="3.5" y="4" width="14" height="18" rx="1.5" fill="{ORANGE}" {O}/>
<rect x="7" y="2.5" width="7" height="3.5" rx="1" fill="{GREY}" {O}/>
''' + page(10, 9, 11, 13) + f'''
<path d="M12.5 14h5M12.5 16.5h6M12.5 19h4" {line(BLUE,1.2)}/>
'''
I["undo"] = f'''
<path d="M5.5 9.5h9a5.5 5.5 0 0 1 0 11H9" {line(NAVY,4.4)}/>
<path d="M5.5 9.5h9a5.5 5.5 0 0 1 0 11H9" {line(BLUE,2.4)}/>
<path d="M9.5 3.5L3 9.5l6.5 6z" fill="{BLUE}" {O}/>
'''
I["redo"] = f'''
<path d="M18.5 9.5h-9a5.5 5.5 0 0 0 0 11H15" {line(NAVY,4.4)}/>
<path d="M18.5 9.5h-9a5.5 5.5 0 0 0 0 11H15" {line(BLUE,2.4)}/>
<path d="M14.5 3.5L21 9.5l-6.5 6z" fill="{BLUE}" {O}/>
'''
I["tcr"] = f'''
<path d="M2.5 4.5h16v15a2 2 0 0 1-2 2h-12a2 2 0 0 1-2-2z" fill="{PAPER}" {O}/>
<path d="M18.5 8.5h3v11a2 2 0 0 1-4 0" fill="{PAPER2}" {O}/>
<rect x="4.5" y="6.5" width="12" height="3.5" fill="{GREEN}"/>
<rect x="4.5" y="12" width="5" height="5" fill="{LGREEN}"/>
<path d="M11.5 12.5h5M11.5 15h5M11.5 17.5h5M4.5 19.3h12" {line(GREY,1.1)}/>
'''
I["log"] = page(3, 2, 15, 20) + f'''
<path d="M6 7.5h8M6 10.5h9M6 13.5h7M6 16.5h5" {line(GREY,1.3)}/>
<circle cx="17.5" cy="17.5" r="5" fill="{RED}" {O}/>
<path d="M17.5 14.8v3.2" {line(PAPER,2)}/>
<circle cx="17.5" cy="20.2" r="1" fill="{PAPER}"/>
'''
# --- Switchboard list pictures
I["new"] = page(3.5, 2, 14, 19) + f'''
<path d="M6.5 8h7M6.5 11h8M6.5 14h5" {line(GREY,1.2)}/>
<circle cx="17.5" cy="17.5" r="5" fill="{GREEN}" {O}/>
<path d="M17.5 14.8v5.4M14.8 17.5h5.4" {line(PAPER,2)}/>
'''
I["unsent"] = envelope(2, 5, 20, 14) + f'''
<rect x="16" y="7" width="4" height="4.5" fill="{ORANGE}" stroke="{NAVY}" stroke-width="1"/>
'''
I["pending"] = f'''
<path d="M5 2.5h14M5 21.5h14" {line(NAVY,2.2)}/>
<path d="M6.5 3v2.5c0 3 5.5 4.7 5.5 6.5 0 1.8-5.5 3.5-5.5 6.5V21h11v-2.5c0-3-5.5-4.7-5.5-6.5 0-1.8 5.5-3.5 5.5-6.5V3z" fill="{PAPER}" {O}/>
<path d="M9 6.5h6c-.5 1.3-3 2.5-3 3.5 0-1-2.5-2.2-3-3.5zM8.3 19.8c.5-2 3.7-3.3 3.7-4.8 0 1.5 3.2 2.8 3.7 4.8z" fill="{YELLOW}"/>
'''
I["overdue"] = f'''
<circle cx="12" cy="13" r="8.5" fill="{PAPER}" stroke="{RED}" stroke-width="2.4"/>
<path d="M3.5 6l3-3M20.5 6l-3-3" {line(RED,2.4)}/>
<path d="M12 8v5.2l3.2 2.2" {line(NAVY,2)}/>
'''
I["paid"] = f'''
<rect x="1.5" y="5.5" width="21" height="13" rx="1.5" fill="{GREEN}" {O}/>
<circle cx="12" cy="12" r="4.3" fill="{LGREEN}"/>
<path d="M13.8 10.3c-.3-.8-1-1.2-1.8-1.2-1.1 0-1.9.6-1.9 1.4 0 1.9 3.8 1 3.8 3 0 .8-.8 1.4-1.9 1.4-.9 0-1.6-.4-1.9-1.2M12 8v8" {line(NAVY,1.3)}/>
<circle cx="5" cy="12" r="1" fill="{LGREEN}"/><circle cx="19" cy="12" r="1" fill="{LGREEN}"/>
'''
I["followup"] = envelope(1.5, 4, 16, 12) + f'''
<path d="M10.5 14.5v2.5a3 3 0 0 0 3 3h4" {line(NAVY,4.2)}/>
<path d="M10.5 14.5v2.5a3 3 0 0 0 3 3h4" {line(PURPLE,2.2)}/>
<path d="M16.5 15.5l5 4.5-5 4z" fill="{PURPLE}" {O}/>
'''
I["rejected"] = f'''
<circle cx="12" cy="12" r="9" fill="{PAPER}" stroke="{RED}" stroke-width="3"/>
<path d="M5.8 5.8l12.4 12.4" {line(RED,3)}/>
'''
# --- Switchboard toolbar
I["large"] = "".join(f'<rect x="{3+c*10}" y="{3+r*10}" width="8" height="8" rx="1" fill="{BLUE}" {O}/>' for r in range(2) for c in range(2))
I["small"] = "".join(f'<rect x="{2+c*11}" y="{3+r*7}" width="4.5" height="4.5" fill="{BLUE}"/><path d="M{8.5+c*11} {5.25+r*7}h2.5" {line(NAVY,1.6)}/>' for r in range(3) for c in range(2))
I["list"] = "".join(f'<rect x="3" y="{3+r*5}" width="3.6" height="3.6" fill="{BLUE}" stroke="{NAVY}" stroke-width="1"/><path d="M9 {4.8+r*5}h12" {line(NAVY,1.6)}/>' for r in range(4))
I["details"] = f'''
<rect x="2.5" y="3.5" width="19" height="17" fill="{PAPER}" {O}/>
<rect x="2.5" y="3.5" width="19" height="4" fill="{BLUE}" {O}/>
<path d="M9 7.5v13M15.5 7.5v13M2.5 11.8h19M2.5 16.2h19" {line(NAVY,1)}/>
'''
I["arrangeall"] = "".join(f'<rect x="{3+c*6.5}" y="{3+r*6.5}" width="5" height="5" rx="0.8" fill="{BLUE if (r+c)%2==0 else LBLUE}" stroke="{NAVY}" stroke-width="1"/>' for r in range(3) for c in range(3))
A = lambda y: f'<path d="M2.5 {y+8}l3-8 3 8M3.6 {y+5.3}h3.8" {line(BLUE,1.8)}/>'
Z = lambda y: f'<path d="M2.7 {y}h5.6l-5.6 8h5.6" {line(GREEN,1.8)}/>'
ARROW = f'<path d="M16.5 3v17" {line(NAVY,2.2)}/><path d="M12.5 16l4 5 4-5z" fill="{NAVY}" {O}/>'
I["az"] = A(2) + Z(13.5) + ARROW
I["za"] = Z(2.5) + A(13) + ARROW
I["find"] = f'''
<path d="M14.5 14.5l6.5 6.5" {line(NAVY,4)}/>
<circle cx="9.5" cy="9.5" r="7" fill="{LBLUE}" {O}/>
<path d="M6 8a4 4 0 0 1 3.5-2.5" {line(PAPER,1.6)}/>
'''
# --- rebate form
I["back"] = f'''
<circle cx="12" cy="12" r="9.5" fill="{BLUE}" {O}/>
<path d="M17 12H8M11.5 7.5L7 12l4.5 4.5" {line(PAPER,2.6)}/>
'''
I["forward"] = f'''
<circle cx="12" cy="12" r="9.5" fill="{BLUE}" {O}/>
<path d="M7 12h9M12.5 7.5L17 12l-4.5 4.5" {line(PAPER,2.6)}/>
'''
CHAIN = lambda c: (f'<path d="M10.5 13.5l3-3" {line(c,2.4)}/>'
    f'<path d="M9.2 9.8l-3.5 3.5a3.2 3.2 0 0 0 4.5 4.5l1.3-1.3" {line(c,2.6)}/>'
    f'<path d="M14.8 14.2l3.5-3.5a3.2 3.2 0 0 0-4.5-4.5l-1.3 1.3" {line(c,2.6)}/>')
I["hyperlink"] = f'<circle cx="12" cy="12" r="10.5" fill="{PAPER2}"/>' + CHAIN(BLUE)
I["nohyperlink"] = f'<circle cx="12" cy="12" r="10.5" fill="{PAPER2}"/>' + CHAIN(GREY) + f'<path d="M4.5 4.5l15 15" {line(RED,2.2)}/>'

for name, body in I.items():
    open(os.path.join(OUT, name + ".svg"), "w").write(svg(body))

# The program's icon: an envelope and a coin on a blue tile.
app = f'''<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64" viewBox="0 0 64 64">
<rect x="2" y="2" width="60" height="60" rx="12" fill="{BLUE}"/>
<rect x="9" y="17" width="38" height="27" rx="2.5" fill="{PAPER}" stroke="{NAVY}" stroke-width="2.5" stroke-linejoin="round"/>
<path d="M9 17l19 15 19-15" fill="none" stroke="{NAVY}" stroke-width="2.5" stroke-linejoin="round"/>
<circle cx="44" cy="43" r="13" fill="{GREEN}" stroke="{NAVY}" stroke-width="2.5"/>
<path d="M48.5 38.3c-.8-2-2.5-3-4.5-3-2.8 0-4.8 1.5-4.8 3.5 0 4.8 9.6 2.6 9.6 7.5 0 2-2 3.5-4.8 3.5-2.2 0-4-1-4.7-3M44 33v20" fill="none" stroke="{PAPER}" stroke-width="2.6" stroke-linecap="round"/>
</svg>
'''
open(os.path.join(OUT, "vantry.svg"), "w").write(app)

def appmark(x, y, s):
    return (f'<g transform="translate({x} {y}) scale({s})">'
            + app.split("\n", 1)[1].rsplit("</svg>", 1)[0] + '</g>')

splash = f'''<svg xmlns="http://www.w3.org/2000/svg" width="480" height="280" viewBox="0 0 480 280">
<rect width="480" height="280" fill="{BLUE}"/>
<circle cx="420" cy="60" r="110" fill="#3A7BC0"/>
<rect y="200" width="480" height="80" fill="{NAVY}"/>
{appmark(36, 40, 1.9)}
<text x="176" y="100" font-family="Liberation Sans, Arial, sans-serif" font-size="40" font-weight="bold" fill="{PAPER}">Vantry!</text>
<text x="176" y="148" font-family="Liberation Sans, Arial, sans-serif" font-size="40" font-weight="bold" fill="{YELLOW}">Vantry!</text>
<text x="178" y="180" font-family="Liberation Sans, Arial, sans-serif" font-size="15" fill="{PAPER}">Track every rebate until it pays.</text>
</svg>
'''
open(os.path.join(OUT, "splash.svg"), "w").write(splash)

banner = f'''<svg xmlns="http://www.w3.org/2000/svg" width="640" height="56" viewBox="0 0 640 56">
<rect width="640" height="56" fill="{BLUE}"/>
<path d="M430 56L480 0H640V56z" fill="{NAVY}"/>
{appmark(10, 6, 0.69)}
<text x="66" y="37" font-family="Liberation Sans, Arial, sans-serif" font-size="26" font-weight="bold" fill="{PAPER}">Vantry! <tspan fill="{YELLOW}">Vantry!</tspan></text>
<text x="626" y="24" text-anchor="end" font-family="Liberation Sans, Arial, sans-serif" font-size="12" fill="{PAPER}">brought to you by</text>
<text x="626" y="43" text-anchor="end" font-family="Liberation Sans, Arial, sans-serif" font-size="16" font-weight="bold" fill="{LGREEN}">Thrift Courier</text>
</svg>
'''
open(os.path.join(OUT, "banner.svg"), "w").write(banner)
