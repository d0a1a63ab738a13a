#!/usr/bin/env python3
"""Prints the tables of the gamma functions, called by generate.sh: gamma.py TABLE. Needs mpmath.

Fits are Remez's: of all polynomials of a degree the one whose largest error on [0, 1] is least. The pairs of
coefficients a, b of a product c (t^2 + a t + b)... come from the polynomial's roots."""
import sys
from mpmath import mp, mpf

mp.dps = 50


# ---- Numbers as patterns ----

def rounded(x, digits):
    """The integer s and the e with s 2^e nearest to x, s of so many bits."""
    if x == 0:
        return 0, 0
    e = mp.frexp(x)[1] - digits
    s = int(mp.nint(mp.ldexp(abs(x), -e)))
    return (s >> 1, e + 1) if s >> digits else (s, e)


def double(x):
    s, e = rounded(x, 53)
    return "0x%016X" % ((x < 0) << 63 | (s and (e + 52 + 1023) << 52 | s & (1 << 52) - 1))


def as_double(x):
    s, e = rounded(x, 53)
    return mp.ldexp(s, e) * mp.sign(x)


def extended(x):
    s, e = rounded(x, 64)
    return "0x%04X%016X_f80" % ((x < 0) << 15 | (s and e + 63 + 16383), s)


def of_extended(pattern):
    e = pattern >> 64
    return mp.ldexp(pattern & (1 << 64) - 1, (e & 0x7FFF) - 16383 - 63) * (-1 if e >> 15 else 1)


def row(*numbers):
    print("{" + ", ".join(numbers) + "},")


# ---- Fits ----

def value(p, t):
    r = mpf(0)
    for c in p:
        r = r * t + c
    return r


def product(p, q):
    r = [mpf(0)] * (len(p) + len(q) - 1)
    for i, a in enumerate(p):
        for j, b in enumerate(q):
            r[i + j] += a * b
    return r


def remez(f, weight, degree, density=30):
    """The polynomial p, highest coefficient first, with the least largest |weight (p - f)| on [0, 1].
    f and weight are sampled once, at points that are as dense towards the ends as the errors' extrema; between
    the samples an extremum is that of a parabola."""
    n = degree + 2
    points = density * (n - 1) + 1
    grid = [(1 - mp.cos(mp.pi * k / (points - 1))) / 2 for k in range(points)]
    samples = [(f(t), weight(t)) for t in grid]
    chosen = [(grid[density * k], *samples[density * k]) for k in range(n)]
    while True:
        a = mp.matrix(n, n)
        scale = max(abs(w) for t, y, w in chosen) # keeps the matrix regular to the eye
        for i, (t, y, w) in enumerate(chosen):
            power = w
            for j in range(degree, -1, -1):
                a[i, j] = power
                power *= t
            a[i, n - 1] = (-1) ** i * scale
        solution = mp.lu_solve(a, mp.matrix([w * y for t, y, w in chosen]))
        p, level = list(solution[:degree + 1]), abs(solution[n - 1]) * scale
        errors = [w * (value(p, t) - y) for t, (y, w) in zip(grid, samples)]
        # Of each run of errors of one sign the largest.
        best = []
        for k, e in enumerate(errors):
            if best and errors[best[-1]] * e > 0:
                if abs(e) > abs(errors[best[-1]]):
                    best[-1] = k
            elif e != 0:
                best.append(k)
        while len(best) > n:
            best.pop(0 if abs(errors[best[0]]) < abs(errors[best[-1]]) else -1)
        assert len(best) == n, (len(best), n)
        chosen = []
        for k in best:
            t = grid[k]
            if 0 < k < points - 1:
                t0, t2, e0, e1, e2 = grid[k - 1], grid[k + 1], errors[k - 1], errors[k], errors[k + 1]
                left, right = (e1 - e0) / (t - t0), (e2 - e1) / (t2 - t)
                t = (t0 + t) / 2 + (t2 - t0) / 2 * left / (left - right)
            chosen.append((t, f(t), weight(t)))
        if max(abs(w * (value(p, t) - y)) for t, y, w in chosen) <= level * (1 + mpf(10) ** -8):
            return p, level


def monic(f, weight, degree):
    """The same among polynomials whose highest coefficient is 1."""
    p, error = remez(lambda t: f(t) - t**degree, weight, degree - 1)
    return [mpf(1)] + p, error


def held(f, weight, degree):
    """The polynomial with highest coefficient 1 whose weighted squared errors are least, for where a fit has more
    extrema than free coefficients: their mean over such points is least for the same polynomials."""
    n = 8 * degree
    a, y = mp.matrix(n, degree), mp.matrix(n, 1)
    for i in range(n):
        t = (1 - mp.cos(mp.pi * (i + mpf(0.5)) / n)) / 2
        w = weight(t)
        for j in range(degree):
            a[i, j] = w * t**(degree - 1 - j)
        y[i] = w * (f(t) - t**degree)
    p = [mpf(1)] + list(mp.lu_solve(a.T * a, a.T * y))
    return p, max(abs(weight(t) * (value(p, t) - f(t))) for t in (mpf(i) / 200 for i in range(201)))


def pairs(p):
    """(a, b) of the factors t^2 + a t + b of p; the last one is that of the two real roots if p has any."""
    roots = mp.polyroots(p, maxsteps=200, extraprec=200)
    upper = [r for r in roots if mp.im(r) > mpf(10) ** -20]
    real = [mp.re(r) for r in roots if abs(mp.im(r)) <= mpf(10) ** -20]
    assert 2 * len(upper) + len(real) == len(p) - 1 and len(real) in (0, 2)
    complex_pairs = [(-2 * mp.re(r), abs(r)**2) for r in upper]
    return complex_pairs, [(-sum(real), real[0] * real[1])] if real else []


def report(name, error):
    if "-v" in sys.argv:
        print(name, "error", mp.nstr(error, 5), "2^" + mp.nstr(mp.log(error, 2), 5), file=sys.stderr)


# ---- The gamma function in blocks of 16 ----

# gamma(2 + f), as a0 ... a10, b0 ... b10, c.
FIRST_BLOCK = [
    0x4000EF0E85C9AE40ABE2, 0x4000CA2049DDB4096DD8, 0x400099A203B4DC2D1A8C, 0x3FFFBF5D9D9C0C295570,
    0x3FFDE8DD037DEB833BAB, 0xBFFEB6AE39A2A36AA03A, 0xC000804960DC2850277B, 0xC000D9F3973841C09F80,
    0xC0019C198A676F8A2239, 0xC001C98B7DAE02BE3226, 0xC001E9CAF31AC69301BA, 0x4000FBBDD58608A0D172,
    0x4000FDD0316D1E078301, 0x40018630B760468C15E4, 0x400193EDE20E47D9152E, 0x4001A86F3A38C77D6B19,
    0x4001C44FB47E90584083, 0x4001E863EE77E1C45981, 0x40028AC15BE238B9D70E, 0x4002A5D94B6592350EF4,
    0x4002C379DB3E20A148B3, 0x4002DACA49B73974F6C9, 0x3FE1810E496A1AFEC895]
RESCALE = 0x3BECBA5D5869211696FF


def tgamma_blocks():
    row(*("0x%020X_f80" % x for x in FIRST_BLOCK))
    for k in range(1, 12):
        if k < 11:
            g = lambda t: mp.gamma(16 * k + t)
            p, error = remez(g, lambda t: 1 / g(t), 22)
        else: # its factor c is 1
            g = lambda t: mp.gamma(176 + t) * of_extended(RESCALE)
            p, error = monic(g, lambda t: 1 / g(t), 22)
        report(k, error)
        complex_pairs, real = pairs([c / p[0] for c in p])
        assert not real
        complex_pairs.sort(reverse=True)
        row(*(extended(a) for a, b in complex_pairs), *(extended(b) for a, b in complex_pairs), extended(p[0]))


# ---- lgamma by binades, t = x/2^(k+2) - 1 ----

# Rows in the order of the coefficients of t^10 ... t^0.
GIVEN_BINADES = {
    0: "0.0033854665548958885 -0.021906899705320417 0.06715375218380705 -0.13530593290365034 0.21523363143372876"
       " -0.3140620298318915 0.47750117759900934 -0.8536457627078061 2.2705776960018977 5.024470795515474"
       " 1.791759468828126",
    1: "0.004744504418817111 -0.03115027665388487 0.09727943243514654 -0.2008622253910512 0.3300106209142981"
       " -0.5016477566782184 0.8004216868440284 -1.5101930817993727 4.260375098856535 16.125132022755825"
       " 8.52516136038043",
    10: "1.6188924561979008 -10.824567302010275 34.61412818733534 -73.75298755486897 126.26208259523828"
        " -201.86928601011957 340.89098271617485 -682.7706383641604 2048.2464552498313 34069.07027719684"
        " 29970.330294393978"}


# [1, 1.25), [1.25, 1.5), [1.5, 1.75), [1.75, 2), [2, 4): the centre, the coefficients of O and of E.
GIVEN_PIECES = [
    (0, "-0.56647633772004324 -6.8474845520268488 -14.187536543304514 -7.8195302777394629",
     "0.055762283047818162 2.5689864428767422 11.896488118446243 12.280855985759299 2.6189348806607669"),
    (1.4616321449683622, "-0.0093302416520460851 -0.032783884104987254 -0.14758773392299096 2.8471629265300675e-12",
     "0.0095482856747924234 0.018088785706104071 0.064624792288803024 0.48383612274904642 -0.12148629053584961"),
    (0, "-0.039662736931177042 -1.0323940125560764 -4.6619257932846114 -5.4924229268998976",
     "0.0026653556501803895 0.26375394564840393 2.6405943009999469 6.0874119919537026 2.2319507142420658"),
    (0, "-0.014031570635625828 -0.49453697158826287 -3.0399098511418452 -4.7893558709793576",
     "0.00081087742579698534 0.10854449687626426 1.4739380162753994 4.6758153466324828 2.0785126152567317"),
    (0, "3.6948741603980319e-05 0.0049361697467824091 0.12286581200585678 0.81067275797787375 1.7884191104221256",
     "-1.120492217138287e-06 -0.0005519944130247472 -0.029404291865408421 -0.3695688526116071 -1.3192543976833531"
     " -1.007437551154768")]


def lgammaf_pieces():
    def piece(centre, scale, odd, even):
        odd, even = [0] * (5 - len(odd)) + odd, [0] * (6 - len(even)) + even
        row(*(double(mpf(x)) for x in [centre, scale] + odd + even + [0]))

    for centre, *coefficients in GIVEN_PIECES:
        piece(centre, 1, *([float(x) for x in c.split()] for c in coefficients))
    for k in range(11):
        g = lambda t: mp.loggamma(mp.ldexp(1 + t, k + 2))
        p, error = remez(g, lambda t: 1 / g(t), 10)
        report(k, error)
        if k in GIVEN_BINADES:
            given = [mpf(float(c)) for c in GIVEN_BINADES[k].split()]
            if "-v" in sys.argv:
                print("  fit - given:", *(mp.nstr((a - b) / b, 3) for a, b in zip(p, given)), file=sys.stderr)
            p = given
        piece(mp.ldexp(1, k + 2), mp.ldexp(1, -k - 2), p[1::2], p[0::2])


GIVEN_PAIRS = [(0x4001C85EFAC379FAFEE2, 0xC0019F1F3C822D03080E), (0x4001C10D7AAB7CEC7FF2, 0xC001941CACFA9C0FA8A6),
               (0x4001B3537BDF603E454C, 0xC000FE34336391D99CB7)] # the first three of row 0
GIVEN_FACTORS = {0: 0x3FEECC2A7F930856177B, 6: 0x3FF2DBFF93ECEBCEF1F3}


def lgamma_binades():
    for k in range(7):
        g = lambda t: mp.loggamma(mp.ldexp(1 + t, k + 2))
        printed = [(of_extended(b), of_extended(a)) for a, b in GIVEN_PAIRS] if k == 0 else []
        factor = [mpf(1)]
        for a, b in printed:
            factor = product(factor, [mpf(1), a, b])
        degree = 22 - 2 * len(printed)
        if k in GIVEN_FACTORS:
            c = of_extended(GIVEN_FACTORS[k])
            scale = lambda t: c * value(factor, t)
            p, error = held(lambda t: g(t) / scale(t), scale, degree)
        else:
            p, error = remez(g, lambda t: mpf(1), degree)
            c, p = p[0], [x / p[0] for x in p]
        report(k, error)
        complex_pairs, real = pairs(p)
        complex_pairs.sort(key=lambda pair: pair[0])
        all_pairs = printed + complex_pairs + real
        if "-v" in sys.argv:
            print("  a:", *(mp.nstr(b, 5) for a, b in all_pairs), " b:", *(mp.nstr(a, 5) for a, b in all_pairs),
                  file=sys.stderr)
        row(*(extended(x) for a, b in all_pairs for x in (b, a)), extended(c))


# ---- lgamma at its zeros ----

# lo, root, hi of the first and the second zero between -(r + 3) and -(r + 2).
ZEROS = """
-2.7886826467274126 -2.7476826467274127 -2.7066826467274128 -2.5070247382208004 -2.4570247382208006 -2.4070247382208008
-3.9612942848585977 -3.955294284858598 -3.949294284858598 -3.16358088834998 -3.14358088834998 -3.12358088834998
-4.992794640560048 -4.991544640560048 -4.990294640560048 -4.044361839740537 -4.039361839740537 -4.034361839740537
-5.998807480080876 -5.998607480080875 -5.998407480080875 -5.009218168322594 -5.0082181683225935 -5.007218168322593
-6.9998290078906376 -6.999801507890638 -6.999774007890638 -6.001585294453156 -6.001385294453155 -6.001185294453155
-7.999978197095821 -7.999975197095821 -7.99997219709582 -7.000225833407325 -7.000198333407325 -7.000170833407325
-8.999997644250977 -8.999997244250977 -8.999996844250978 -8.000028300270682 -8.000024800270682 -8.000021300270681
-9.99999975442663 -9.99999972442663 -9.999999694426629 -9.000003130714823 -9.000002755714823 -9.000002380714822
-10.99999997844789 -10.99999997494789 -10.99999997144789 -10.000000312573013 -10.000000275573013 -10.000000238573014
-11.999999998137325 -11.999999997912324 -11.999999997687324 -11.000000028552106 -11.000000025052106 -11.000000021552106
-12.99999999985941 -12.99999999983941 -12.99999999981941 -12.000000002362675 -12.000000002087676 -12.000000001812676
-13.99999999998928 -13.99999999998853 -13.99999999998778 -13.00000000018059 -13.00000000016059 -13.00000000014059
-14.999999999999286 -14.999999999999236 -14.999999999999186 -14.00000000001247 -14.00000000001147 -14.00000000001047
"""


def lgamma_zeros():
    mp.dps = 80
    numbers = [[mpf(float(x)) for x in line.split()] for line in ZEROS.split("\n") if line]
    for which in (0, 3):
        for low, root, high in (line[which:which + 3] for line in numbers):
            g = lambda x: mp.log(abs(mp.gamma(x)))
            p0 = g(root)
            start, length = low - root, high - low
            # By s in [0, 1], t = start + length s.
            def slope(s):
                t = start + length * s
                return (g(root + t) - p0) / t if abs(t) > length * mpf(10) ** -20 else mp.psi(0, root)

            p, error = remez(slope, lambda s: 1 / slope(s), 15)
            report(mp.nstr(root, 17), error)
            inner = [1 / length, -start / length]
            q = [mpf(0)]
            for c in p:
                q = product(q, inner)
                q[-1] += c
            q = (q[-16:] + [p0])[::-1] # p0 ... p16
            bounds = [double(x) + "_f64" for x in (low, root, high)]
            low_part, high_part = map(extended, q[:5]), (double(c) + "_f64" for c in q[5:])
            row(*bounds, *("{" + ", ".join(part) + "}" for part in (low_part, high_part)))


# ---- Logarithms: r near 1/(1 + (i + 0.5)/256), and -ln r in two parts ----

def reciprocal(i):
    return mpf(mp.nint(2048 / (1 + (i + mpf(0.5)) / 256))) / 2048


def reciprocals():
    for i in range(256):
        row(double(reciprocal(i)))


def lgammaf_logs():
    for i in range(256):
        exact = -mp.log(reciprocal(i))
        s, e = rounded(exact, 21)
        high = mp.ldexp(s, e)
        row(double(high), double(exact - high))


def lgamma_logs():
    for i in range(256):
        exact = -mp.log(reciprocal(i))
        high = mp.ldexp(mp.ceil(mp.ldexp(exact, 48)), -48)
        row(double(high), double(exact - high))


# ---- In vectors: short intervals around centres, the low coefficients in two parts ----

def interpolation(f, half, degree):
    """The polynomial, constant term first, that is f at the Chebyshev points of [-half, half]."""
    n = degree + 1
    points = [half * mp.cos(mp.pi * (i + mpf(0.5)) / n) for i in range(n)]
    return list(mp.lu_solve(mp.matrix([[t**j for j in range(n)] for t in points]), mp.matrix([f(t) for t in points])))


def in_two_parts(c):
    return [double(c), double(c - as_double(c))]


def columns(p, long):
    """Of p, constant term first: the coefficients from the highest, the last `long` ones in two parts each."""
    return [double(c) for c in p[:long - 1:-1]] + [part for c in p[long - 1::-1] for part in in_two_parts(c)]


def tgamma_quarters():
    """gamma(1.125 + 0.25 j + s), |s| <= 1/8, a row for each coefficient."""
    fits = [interpolation(lambda s: mp.gamma(mpf(1.125) + mpf(j) / 4 + s), mpf(1) / 8, 15) for j in range(4)]
    for coefficient in zip(*(columns(p, 4) for p in fits)):
        row(*coefficient)


def lgamma_eighths():
    """lgamma(c + s) with c = 2^k (1 + j/8), k from -1 and j from 0, |s| <= 2^k/16."""
    for k in range(-1, 9):
        for j in range(8):
            c, half = mp.ldexp(8 + j, k - 3), mp.ldexp(1, k - 4)
            value = mp.loggamma(c) if c not in (1, 2) else mpf(0)
            slope = interpolation(lambda s: (mp.loggamma(c + s) - value) / s, half, 11)
            row(*columns([value] + slope, 3))


if __name__ == "__main__":
    globals()[sys.argv[1]]()
