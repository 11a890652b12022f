"""Special functions, integrators, probability distributions, angles: every function of <wq_stat/distributions.h> once more.

The names are those of the header. A Python float is the double that C++ computes with, and the elementary functions are those of
the same C library, so a result is expected to agree to the last bits. Counts are Python integers taken modulo 2^64; reals may be
given as int or float. What Python refuses (division by zero, logarithm of 0, overflow of exp) goes through the helpers below, which
give the infinity or NaN of IEEE arithmetic.

A real may also be any other object with the arithmetic operators and the methods divided, log, exp, sqrt, sin, cos, atan, asin and
acos; ../distributions_table.py runs the same steps with numbers of 50 digits in that way.
"""

import math

SIZE = 2 ** 64                # counts and indices are unsigned 64-bit and wrap
NAN = math.nan
INFINITY = math.inf
DBL_MAX = 1.7976931348623157e308
EXACT = 2.0 ** 53             # up to here x - 1 differs from x
PI = 3.141592653589793


# ---------------------------------------------------------------- arithmetic as in C

def real(x):
    """A count or a number as a double; other kinds of numbers as they are."""
    return float(x) if isinstance(x, (int, float)) else x


def count(n):
    """An unsigned 64-bit count."""
    return n % SIZE


def divide(a, b):
    a, b = real(a), real(b)
    if not isinstance(a, float):
        return a.divided(b)
    if not isinstance(b, float):
        return type(b)(a).divided(b)
    if b != 0.0:
        return a / b
    if a == 0.0 or math.isnan(a):
        return NAN
    return math.copysign(INFINITY, a) * math.copysign(1.0, b)


def log(x):
    if not isinstance(x, float):
        return x.log()
    if x == 0.0:
        return -INFINITY
    return NAN if x < 0.0 else math.log(x)


def exp(x):
    if not isinstance(x, float):
        return x.exp()
    try:
        return math.exp(x)
    except OverflowError:
        return INFINITY


def sqrt(x):
    if not isinstance(x, float):
        return x.sqrt()
    return NAN if x < 0.0 else math.sqrt(x)


def sin(x):
    if not isinstance(x, float):
        return x.sin()
    return NAN if math.isinf(x) else math.sin(x)


def cos(x):
    if not isinstance(x, float):
        return x.cos()
    return NAN if math.isinf(x) else math.cos(x)


def atan(x):
    return x.atan() if not isinstance(x, float) else math.atan(x)


def asin(x):
    if not isinstance(x, float):
        return x.asin()
    return NAN if abs(x) > 1.0 else math.asin(x)


def acos(x):
    if not isinstance(x, float):
        return x.acos()
    return NAN if abs(x) > 1.0 else math.acos(x)


def to_signed(x, bits=64):
    """A double as a signed integer: truncated toward zero; NaN 0; beyond the range the nearest end of it."""
    x = float(x)
    if math.isnan(x):
        return 0
    if x >= 2.0 ** (bits - 1):
        return 2 ** (bits - 1) - 1
    if x < -(2.0 ** (bits - 1)):
        return -(2 ** (bits - 1))
    return math.trunc(x)


def to_unsigned(x, bits=64):
    """A double as an unsigned integer: truncated toward zero; NaN 0; negative and too large the largest value."""
    x = float(x)
    if math.isnan(x):
        return 0
    if x <= -1.0 or x >= 2.0 ** bits:
        return 2 ** bits - 1
    return math.trunc(x)


def ceil(x):
    """Rounded up, still a double; infinities and NaN as they are."""
    x = float(x)
    return float(math.ceil(x)) if math.isfinite(x) else x


def sqr(x):
    x = real(x)
    return x * x


def odd(n):
    return n & 1 != 0


LN_SQRT_PI = 0.57236494292470008707
SQRT_2_PI = 2.506628274631000502416


# ---------------------------------------------------------------- special functions and integration

def factorial(n):
    n = count(n)
    if n == 0:
        return 1.0
    result = 1.0
    for k in range(1, n + 1):
        if DBL_MAX / k > result:
            result = result * k
        else:
            return -1.0
    return result


def lnGamma(x):
    x = real(x)
    if x > EXACT:
        return NAN
    s = 0.0
    y = x - 1.0
    while y > 0.0:
        s = s + log(y)
        y = y - 1.0
    if y < 0.0:
        s = s + LN_SQRT_PI
    return s


def betaRatio(x, p, q, beta):
    x, p, q, beta = real(x), real(p), real(q), real(beta)
    if x == 0.0 or x == 1.0:
        return x
    if x < 0.0 or x > 1.0:
        return 0.0
    if math.isnan(beta):
        return NAN          # as the last step does, after a series that may take millions of terms
    psq = p + q
    if psq * x > p:
        xx, cx, pp, qq, changed = 1.0 - x, x, q, p, True
    else:
        xx, cx, pp, qq, changed = x, 1.0 - x, p, q, False
    term = 1.0
    total = 1.0
    i = 0
    temp = 0.0
    rx = divide(xx, cx)
    ns = to_signed(ceil(qq + psq * cx)) + 1
    while True:
        i += 1
        ns -= 1
        if ns >= 0:
            temp = qq - i
            if ns == 0:
                temp = xx
        term = divide(term * temp * rx, pp + i)
        total = total + term
        if total >= abs(term) and 1e-7 * total >= abs(term):
            break
        # what follows only ends a series that would not end by itself
        if term == 0.0 or not math.isfinite(total):
            break
        if ns <= 0 and abs(xx * rx) <= pp + i and total + term == total:
            break
    if xx <= 0.0 or cx <= 0.0:
        return 0.0
    result = divide(total * exp(pp * log(xx) + (qq - 1.0) * log(cx) - beta), pp)
    return 1.0 - result if changed else result


NEWTON_STEPS = 5000


def inverseBetaRatio(alpha, p, q, beta, visits=None):
    """visits, a list, receives every x of the iteration and whether it ended by itself."""
    alpha, p, q, beta = real(alpha), real(p), real(q), real(beta)
    if alpha == 0.0 or alpha == 1.0:
        return alpha
    changed = alpha > 0.5
    a = alpha
    if changed:
        a = 1.0 - alpha
        q = p
    r = sqrt(-log(a * a))
    y = r - divide(2.30753 + 0.27061 * r, 1.0 + (0.99229 + 0.04481 * r) * r)
    if p > 1.0 and q > 1.0:
        r = (y * y - 3.0) / 6.0
        s = divide(1.0, 2.0 * p - 1.0)
        t = divide(1.0, 2.0 * q - 1.0)
        h = divide(2.0, s + t)
        w = divide(y * sqrt(h + r), h) - (t - s) * (r + 0.8333333333333334 - divide(2.0, 3.0 * h))
        x = divide(p, p + q * exp(2.0 * w))
    else:
        r = 2.0 * q
        t = divide(1.0, 9.0 * q)
        c = 1.0 - t + y * sqrt(t)
        t = r * (c * c * c)
        if t > 0.0:
            t = divide(4.0 * p + r - 2.0, t)
            if t > 1.0:
                x = 1.0 - divide(2.0, 1.0 + t)
            else:
                x = exp(divide(log(a * p) + beta, p))
        else:
            x = 1.0 - exp(divide(log((1.0 - a) * q) + beta, q))

    low, high = 0.0, 1.0     # between them betaRatio crosses a
    ended = False
    for _ in range(NEWTON_STEPS):
        value = betaRatio(x, p, q, beta)
        if visits is not None:
            visits.append(x)
        if 0.0 < x < 1.0:
            if value < a and x > low:
                low = x
            if value >= a and x < high:
                high = x
        d = (value - a) * exp((1.0 - p) * log(x) + (1.0 - q) * log(1.0 - x) + beta)
        if math.isinf(d):
            break
        step = d
        candidate = x - step
        while (candidate <= 0.0 or candidate >= 1.0) and step != 0.0:
            step = step / 2.0
            candidate = x - step
        if candidate <= 0.0 or candidate >= 1.0:
            break
        x = candidate
        if not abs(d) >= 1e-6:
            ended = True
            break
    if visits is not None:
        visits.append(ended)
    if not ended:
        x = crossing(a, p, q, beta, low, high)
    return 1.0 - x if changed else x


def crossing(a, p, q, beta, low, high):
    """The x between low and high where betaRatio jumps over a, by bisection down to neighbouring doubles."""
    if not 0.0 <= a <= 1.0 or math.isnan(beta):
        return NAN
    while True:
        middle = low + (high - low) / 2.0
        if middle == low or middle == high:
            return high
        if betaRatio(middle, p, q, beta) < a:
            low = middle
        else:
            high = middle


SIMPSON_STEPS = 2 ** 30


def simpsonIntegral(f, a, b):
    a, b = real(a), real(b)
    h0 = (b - a) / 2.0
    h = h0
    ends = h0 * (f(a) + f(b))
    even = 0.0
    middle = f((a + b) / 2.0)
    n = 2
    s = h * (ends + 4.0 * middle)
    while True:
        previous = s
        n = 2 * n
        h = h / 2.0
        even = even + middle
        middle = 0.0
        for k in range(1, n + 1, 2):
            middle = middle + f(a + k * h)
        s = h * (ends + 2.0 * even + 4.0 * middle)
        if abs(s - previous) < 1e-9 or n >= SIMPSON_STEPS or not math.isfinite(s):
            return s / 3.0


def quadratureIntegral(f, a, b):
    a, b = real(a), real(b)
    m = (a + b) / 2.0
    fa = f(a)
    fb = f(b)
    fm = f(m)
    whole = (b - a) / 2.0 * (fa + 4.0 * fm + fb) / 3.0
    return quadratureRecursion(f, a, b, m, fa, fb, fm, whole, 1e-9, 1)


def quadratureRecursion(f, a, b, m, fa, fb, fm, whole, tolerance, depth):
    if depth > 64:
        print("recursion limit reached: singularity likely")
        return NAN
    q = (b - a) / 4.0
    flm = f(a + q)
    frm = f(b - q)
    left = q * (fa + 4.0 * flm + fm) / 3.0
    right = q * (fm + 4.0 * frm + fb) / 3.0
    both = left + right
    if abs(both - whole) > tolerance:
        first = quadratureRecursion(f, a, m, a + q, fa, fm, flm, left, tolerance / 2.0, depth + 1)
        if math.isnan(first):
            return NAN
        return first + quadratureRecursion(f, m, b, b - q, fm, fb, frm, right, tolerance / 2.0, depth + 1)
    return both


def binomial(k, n, p):
    k, n, p = count(k), count(n), real(p)
    r = 1.0
    for _ in range(n):
        before = r
        r = r * (1.0 - p)
        if r == before or r == 0.0 or math.isnan(r):
            break
    for i in range(k):
        r = divide(r * float((n - i) % SIZE) * p, float(i + 1) * (1.0 - p))
        if r == 0.0 or math.isnan(r):
            break
    return r


# ---------------------------------------------------------------- distributions

def normalDensity(x):
    x = real(x)
    return exp(-0.5 * (x * x)) / SQRT_2_PI


def normalProb(x):
    return 0.5 + quadratureIntegral(normalDensity, 0.0, x)


def normalProbApprox(x):
    x = real(x)
    a = abs(x)
    d = 1.0 + a * (0.196854 + a * (0.115194 + a * (0.000344 + a * 0.019527)))
    P = 1.0 - divide(0.5, d * d * d * d)
    return P if x > 0.0 else 1.0 - P


def normalPercentPoint(p):
    p = real(p)
    t = sqrt(-2.0 * log(1.0 - (0.5 + abs(p - 0.5))))
    y = t - divide(2.30753 + 0.27061 * t, 1.0 + t * (0.99229 + 0.04481 * t))
    return y if p > 0.5 else -y


def t_Prob(t, df, oneSided):
    t, df = real(t), count(df)
    if df == 0:
        return 0.0
    if df > 2 ** 53:
        return NAN
    theta = atan(divide(t, sqrt(float(df))))
    s = sin(theta)
    c = cos(theta)
    A = 0.0
    if df > 1:
        term = c if odd(df) else 1.0
        total = term
        k = 3 if odd(df) else 2
        c2 = c * c
        while k < df:
            term = term * c2 * float(k - 1) / float(k)
            total = total + term
            if total + term == total or term == 0.0 or math.isnan(total):
                break
            k += 2
        A = s * total
    if odd(df):
        A = 1.5707963267948966 * (A + theta)
    lower = 0.5 * (1.0 + A)
    return 1.0 - lower if oneSided else 2.0 * (1.0 - lower)


def t_PercentPoint(alpha, df):
    alpha, df = real(alpha), float(count(df))
    if df == 0.0:
        return 0.0
    z = normalPercentPoint(alpha / 2.0)
    w = z * (2.0 / (8.0 * df + 1.0) + 1.0)
    return sqrt(df * (exp(w * w / df) - 1.0))


def chiSquareProb(x, df):
    x, df = real(x), float(count(df))
    if x == 0.0 or df == 0.0:
        return 0.0
    h = x / 2.0
    a = df / 2.0
    f = exp(a * log(h) - lnGamma(1.0 + a) - h)
    if not f > 0.0:
        return 0.0 * f
    term = 1.0
    total = 1.0
    while divide(term, total) > 1e-6:
        a = a + 1.0
        term = term * h / a
        total = total + term
    return total * f


def chiSquarePoint(p, df):
    p, df = real(p), float(count(df))
    if df == 0.0:
        return 0.0
    z = normalPercentPoint(p)
    h = 2.0 / (9.0 * df)
    c = 1.0 - h + z * sqrt(h)
    return df * (c * c * c)


def F_Prob(f, df1, df2):
    f, df1, df2 = real(f), float(count(df1)), float(count(df2))
    if df1 == 0.0 or df2 == 0.0:
        return 0.0
    a = df1 / 2.0
    b = df2 / 2.0
    x = divide(b, b + a * f)
    beta = lnGamma(a) + lnGamma(b) - lnGamma(a + b)
    return 1.0 - betaRatio(x, b, a, beta)


def F_PercentPoint(p, df1, df2):
    p, df1, df2 = real(p), float(count(df1)), float(count(df2))
    if p == 0.0:
        return 0.0
    if df1 == 0.0 or df2 == 0.0:
        return 0.0
    a = df2 / 2.0
    b = df1 / 2.0
    beta = lnGamma(a) + lnGamma(b) - lnGamma(a + b)
    x = inverseBetaRatio(1.0 - p, a, b, beta)
    return divide(df2 * (1.0 - x), df1 * x)


def z_TransformBig(r):
    r = real(r)
    if r == 1.0:
        return 10000.0
    return 0.5 * log(divide(1.0 + r, 1.0 - r))


def z_TransformSmall(r, n):
    r = real(r)
    z = z_TransformBig(r)
    return z - divide(3.0 * z + r, float(4 * (n - 1) % SIZE))


def z_to_r(z):
    z = real(z)
    up, down = exp(z), exp(-z)
    return divide(up - down, up + down)


def D_GoodnessOfFit(alpha, n):
    alpha, n = real(alpha), count(n)
    if n < 101:
        return 0.0
    return sqrt(-log(alpha / 2.0) / (2.0 * float(n)))


def D_TwoSamples(alpha, n1, n2):
    alpha, n1, n2 = real(alpha), count(n1), count(n2)
    if alpha == 0.0 or n1 == 0 or n2 == 0:
        return 0.0
    if n1 < 41 and n2 < 41 and not (27 <= n1 <= 40 and 27 <= n2 <= 40):
        return 0.0
    c = sqrt(-0.5 * log(alpha / 2.0))
    if n1 != n2:
        return c * sqrt(divide(float(n1) + float(n2), float(n1 * n2 % SIZE)))
    return c * sqrt(2.0 / float(n1))


def D_Prob(lamda):
    lamda = real(lamda)
    square = lamda * lamda
    factor = 2.0
    total = 0.0
    previous = 0.0
    for j in range(1, 101):
        term = factor * exp(-2.0 * square * float(j * j))
        total = total + term
        if 0.001 * previous > abs(term) or 1e-8 * total > abs(term):
            return total
        previous = abs(term)
        factor = -factor
    return 1.0


def rayleighsProb(z, n):
    z, n = real(z), count(n)
    if n == 0:
        return 0.0
    P = exp(-z)
    if n < 50:
        n = float(n)
        P = P * (1.0 + (2.0 * z - z * z) / (4.0 * n)
                 - (24.0 * z - 132.0 * (z * z) + 76.0 * (z * z * z) - 9.0 * (z * z * z * z)) / (288.0 * (n * n)))
    return P


# ---------------------------------------------------------------- angles and plane vectors

def degreeToRadian(deg):
    return 0.017453292519943295 * real(deg)


def radianToDegree(rad):
    return 57.29577951308232 * real(rad)


def computeResultant(x, y):
    return sqrt(sqr(x) + sqr(y))


def computeAngle(x, y):
    x, y = real(x), real(y)
    angle = 0.0
    r = computeResultant(x, y)
    if r == 0.0:
        return 0.0
    if x >= 0.0 and y >= 0.0:
        angle = acos(divide(x, r))
    if x < 0.0 and y >= 0.0:
        angle = acos(divide(x, r))
    if x < 0.0 and y < 0.0:
        angle = 6.283185307179586 - acos(divide(x, r))
    if x >= 0.0 and y < 0.0:
        angle = asin(divide(y, r)) + 6.283185307179586
    return angle


def computeCircleArea(r):
    return 3.141592653589793 * sqr(r)
