// Makes exact_rayleigh.csv: the tails of Rayleigh's z under uniformity to 20 digits, from z = 0.001 to tails of 1e-300.
//
// R is how far a walk of n unit steps in random directions gets, z = R^2 / n. The upper tail is the contour integral
//     P(R > r) = r / (pi i) integral of K1(r s) I0(s)^n ds along Re s = c, any c > 0,
// which follows from Kluyver's integral, P(R < r) = r integral of J1(r t) J0(t)^n dt, when its path is moved off the pole at 0; the
// lower tail is the rest to 1. At the height `height` the line ends, I0 = (K0(-s) - K0(s)) / (pi i) is multiplied out, and each product
// followed to the side on which it falls. Arb's functions bound their own errors. That the rules of quadrature are long enough is seen by
// two lines, which end at two heights, and for three steps by the integral of the density in its hypergeometric form (Borwein, Straub, Wan
// and Zudilin 2012, Densities of short uniform random walks): they agree to 22 digits before a row is written.
//
// Takes 20 minutes. Debian: libflint-arb-dev. cc -O2 exact_rayleigh.c -o exact_rayleigh -lflint-arb -lflint -lm && ./exact_rayleigh >
// exact_rayleigh.csv
#include <acb.h>
#include <acb_calc.h>
#include <acb_hypgeom.h>
#include <arb_hypgeom.h>

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

enum { bits = 400, most = 60 };

struct walk {
    long n;
    arb_t r;
    double about;  // r
    int side;      // 0 on the line, 1 to the left of its end, -1 to the right
};

// K of an order, at the middle of a ball. Arb takes its power series up to some |w|, which loses exp(2 |w|): then once more, with as many
// bits more.
static void bessel_k(acb_t result, long order, const acb_t w)
{
    acb_t nu, middle;
    mag_t modulus;
    mag_init(modulus);
    acb_init(nu), acb_init(middle);
    acb_set_si(nu, order);
    acb_get_mid(middle, w);
    acb_get_mag(modulus, middle);
    const double size = mag_get_d(modulus);
    acb_hypgeom_bessel_k(result, nu, middle, bits);
    if (acb_rel_accuracy_bits(result) < bits - 50) acb_hypgeom_bessel_k(result, nu, middle, bits + (slong)(3.0 * size));
    acb_clear(nu), acb_clear(middle);
    mag_clear(modulus);
}

static void on_line(acb_t power, const struct walk* walk, const acb_t s)
{
    acb_t zero;
    acb_init(zero);
    acb_get_mid(power, s);
    acb_hypgeom_bessel_i(power, zero, power, bits);
    acb_pow_ui(power, power, (ulong)walk->n, bits);
    acb_clear(zero);
}

// The products that fall to this side.
static void beside_line(acb_t sum, const struct walk* walk, const acb_t s)
{
    acb_t rising, falling, term, power, pi_i;
    acb_init(rising), acb_init(falling), acb_init(term), acb_init(power), acb_init(pi_i);
    acb_const_pi(pi_i, bits);
    acb_mul_onei(pi_i, pi_i);
    acb_neg(term, s);
    bessel_k(rising, 0, term);
    bessel_k(falling, 0, s);
    acb_div(rising, rising, pi_i, bits);
    acb_div(falling, falling, pi_i, bits);
    acb_neg(falling, falling);
    acb_zero(sum);
    arb_t binomial;
    arb_init(binomial);
    for (long k = 0; k <= walk->n; ++k) {
        if ((2 * k - walk->n > walk->about) != (walk->side > 0)) continue;
        acb_pow_ui(term, rising, (ulong)k, bits);
        acb_pow_ui(power, falling, (ulong)(walk->n - k), bits);
        acb_mul(term, term, power, bits);
        arb_bin_uiui(binomial, (ulong)walk->n, (ulong)k, bits);
        acb_addmul_arb(sum, term, binomial, bits);
    }
    arb_clear(binomial);
    acb_clear(rising), acb_clear(falling), acb_clear(term), acb_clear(power), acb_clear(pi_i);
}

static int integrand(acb_ptr result, const acb_t s, void* parameter, slong order, slong precision)
{
    (void)order, (void)precision;
    const struct walk* walk = parameter;
    acb_t k1;
    acb_init(k1);
    acb_mul_arb(k1, s, walk->r, bits);
    bessel_k(k1, 1, k1);
    walk->side == 0 ? on_line(result, walk, s) : beside_line(result, walk, s);
    acb_mul(result, result, k1, bits);
    acb_clear(k1);
    return 0;
}

// Adds the integral between two points, by the Gauss-Legendre rule; whether there was nothing to add.
static int add_piece(acb_t sum, acb_calc_func_t function, void* parameter, const acb_t from, const acb_t to, const mag_t size)
{
    enum { nodes = 44 };
    static arb_struct node[nodes], weight[nodes];
    static int known = 0;
    for (; known < nodes; ++known) {
        arb_init(node + known), arb_init(weight + known);
        arb_hypgeom_legendre_p_ui_root(node + known, weight + known, nodes, (ulong)known, bits);
    }
    acb_t half, at, value, piece;
    mag_t largest;
    mag_init(largest);
    acb_init(half), acb_init(at), acb_init(value), acb_init(piece);
    acb_sub(half, to, from, bits);
    acb_mul_2exp_si(half, half, -1);
    for (int i = 0; i < nodes; ++i) {
        acb_add(at, from, half, bits);
        acb_addmul_arb(at, half, node + i, bits);
        function(value, at, parameter, 0, bits);
        acb_addmul_arb(piece, value, weight + i, bits);
    }
    acb_mul(piece, piece, half, bits);
    acb_add(sum, sum, piece, bits);
    acb_get_mag(largest, piece);
    mag_mul_2exp_si(largest, largest, 92);
    const int nothing = mag_cmp(largest, size) < 0;
    acb_clear(half), acb_clear(at), acb_clear(value), acb_clear(piece);
    mag_clear(largest);
    return nothing;
}

static void point(acb_t s, double real, double imaginary) { acb_set_d_d(s, real, imaginary); }

static void upper_tail(arb_t tail, long n, double z, double factor, double height)
{
    struct walk walk = {.n = n, .side = 0};
    acb_t from, to, sum;
    mag_t size, change;
    arb_init(walk.r);
    acb_init(from), acb_init(to), acb_init(sum);
    mag_init(size), mag_init(change);
    arb_set_d(walk.r, z);
    arb_mul_si(walk.r, walk.r, n, bits);
    arb_sqrt(walk.r, walk.r, bits);
    walk.about = sqrt(z * (double)n);
    const double mean = walk.about / (double)n;
    const double rest = ((double)n - z) / ((double)n + walk.about);
    const double saddle = mean < 0.5 ? 2.0 * mean + mean * mean * mean : 1.0 / (mean * rest * (3.0 - mean));
    const double c = factor * fmax(saddle, 1.0 / sqrt((double)n));
    const double bell = sqrt(2.0 * (1.0 + c * c) / (double)n);
    const double end = n > most ? 60.0 * bell : fmax(height, 2.0 * c);

    point(from, c, 0.0);
    integrand(sum, from, &walk, 0, bits);
    acb_get_mag(size, sum);
    mag_set_d(change, bell);
    mag_mul(size, size, change);
    acb_zero(sum);
    const double width = n > most ? bell : 2.0 * bell;  // beside the saddle point many steps nearly cancel
    const int pieces = (int)ceil(end / fmin(fmax(width, 16.0 / ((double)n + walk.about)), c));
    for (int i = 0; i < pieces; ++i) {
        point(from, c, end * i / pieces);
        point(to, c, i + 1 == pieces ? end : end * (i + 1) / pieces);  // where the sides begin, to the last bit
        add_piece(sum, integrand, &walk, from, to, size);
    }
    for (walk.side = -1; n <= most && walk.side <= 1; walk.side += 2) {
        double distance = 0.0;
        int small = 0;
        for (double step = fmin(end / 4.0, 20.0 / ((double)n + walk.about)); small < 3; step *= 1.5) {
            point(from, c - walk.side * distance, end + distance);
            distance += step;
            point(to, c - walk.side * distance, end + distance);
            small = add_piece(sum, integrand, &walk, from, to, size) ? small + 1 : 0;
        }
    }
    arb_mul(tail, acb_imagref(sum), walk.r, bits);
    arb_mul_2exp_si(tail, tail, 1);
    arb_const_pi(acb_realref(from), bits);
    arb_div(tail, tail, acb_realref(from), bits);
    arb_clear(walk.r);
    acb_clear(from), acb_clear(to), acb_clear(sum);
    mag_clear(size), mag_clear(change);
}

// 2 sqrt(3) / pi x / (3 + x^2) 2F1(1/3, 2/3; 1; x^2 (9 - x^2)^2 / (3 + x^2)^3), of three steps, x > 1.
static int density_of_three(acb_ptr result, const acb_t x, void* parameter, slong order, slong precision)
{
    (void)parameter, (void)order, (void)precision;
    acb_t square, below, a, b, one;
    acb_init(square), acb_init(below), acb_init(a), acb_init(b), acb_init(one);
    acb_mul(square, x, x, bits);
    acb_add_si(below, square, 3, bits);
    acb_sub_si(a, square, 9, bits);
    acb_mul(a, a, a, bits);
    acb_mul(a, a, square, bits);
    acb_pow_ui(b, below, 3, bits);
    acb_div(square, a, b, bits);
    acb_set_si(a, 1), acb_set_si(b, 2), acb_set_si(one, 1);
    acb_div_si(a, a, 3, bits), acb_div_si(b, b, 3, bits);
    acb_hypgeom_2f1(result, a, b, one, square, 0, bits);
    acb_mul(result, result, x, bits);
    acb_div(result, result, below, bits);
    acb_set_si(a, 12);
    acb_sqrt(a, a, bits);
    acb_const_pi(b, bits);
    acb_div(a, a, b, bits);
    acb_mul(result, result, a, bits);
    acb_clear(square), acb_clear(below), acb_clear(a), acb_clear(b), acb_clear(one);
    return 0;
}

static void upper_tail_of_three(arb_t tail, double z)
{
    acb_t from, to, sum, at;
    mag_t error;
    acb_init(from), acb_init(to), acb_init(sum), acb_init(at);
    mag_init(error);
    arb_set_d(acb_realref(from), z);
    arb_mul_si(acb_realref(from), acb_realref(from), 3, bits);
    arb_sqrt(acb_realref(from), acb_realref(from), bits);
    // Near its logarithmic singularity at 1 the density needs short pieces; they grow with the distance from it.
    mag_one(error);
    const double start = sqrt(3.0 * z);
    acb_set(at, from);
    for (double step = 0.4 * (start - 1.0), reached = start; reached < 3.0; step *= 1.4) {
        reached = fmin(reached + step, 3.0);
        point(to, reached, 0.0);
        add_piece(sum, density_of_three, NULL, at, to, error);
        acb_set(at, to);
    }
    arb_set(tail, acb_realref(sum));
    acb_clear(from), acb_clear(to), acb_clear(sum), acb_clear(at);
    mag_clear(error);
}

// Two ways to a value, to 22 digits.
static void agree(const arb_t one, const arb_t other, long n, double z)
{
    arb_t off;
    arb_init(off);
    arb_div(off, one, other, bits);
    arb_sub_si(off, off, 1, bits);
    mag_t size;
    mag_init(size);
    arb_get_mag(size, off);
    if (mag_get_d(size) > 1e-22) {
        fprintf(stderr, "n = %ld, z = %.17g: off by %g\n", n, z, mag_get_d(size));
        exit(1);
    }
    mag_clear(size);
    arb_clear(off);
}

static void row(const char* name, double z, long n, const arb_t value)
{
    printf("%s,%.17g,%ld,,", name, z, n);
    arb_printn(value, 20, ARB_STR_NO_RADIUS);
    printf("\n");
    fflush(stdout);
}

static void rows(long n, double z)
{
    arb_t upper, other;
    arb_init(upper), arb_init(other);
    upper_tail(upper, n, z, 1.0, 12.0);
    upper_tail(other, n, z, 1.25, 16.0);
    agree(upper, other, n, z);
    if (n == 3 && z > 0.4) {
        upper_tail_of_three(other, z);
        agree(upper, other, n, z);
    }
    row("rayleighUpperTail", z, n, upper);
    arb_sub_si(upper, upper, 1, bits);
    arb_neg(upper, upper);
    row("rayleighCdf", z, n, upper);
    arb_clear(upper), arb_clear(other);
}

// Whether the tail, about exp(-z - z^2 / (4 n)), is none of the smallest numbers.
static int above_1e300(double z, long n) { return z + z * z / (4.0 * (double)n) < 300.0 * log(10.0); }

int main(void)
{
    static const long steps[] = {3, 4, 5, 7, 10, 24, 45, 64, 100, 317, 1000, 12345, 1000000};
    puts("# By Arb, with 22 digits that two computations have in common; made by exact_rayleigh.c");
    puts("function,arg1,arg2,arg3,value");
    for (size_t i = 0; i < sizeof steps / sizeof *steps; ++i) {
        const long n = steps[i];
        static const double centre[] = {1e-3, 0.3, 1.4, 2.7};
        static const double rests[] = {0.45, 0.1, 1e-3, 1e-9};
        static const double far[] = {30.0, 110.0, 300.0, 680.0, 690.0};
        for (int j = 0; j < 4; ++j) rows(n, centre[j]);
        for (int j = 0; j < 4; ++j)
            if (n <= 700 && (double)n * (1.0 - rests[j]) > 2.7 && 0.5 * (double)n * log10(rests[j]) > -300.0)
                rows(n, (double)n * (1.0 - rests[j]));
        for (int j = 0; j < 5; ++j)
            if (n > 700 && far[j] < 0.42 * (double)n && above_1e300(far[j], n)) rows(n, far[j]);
    }
    static const long table_steps[] = {7, 10, 20, 49, 50, 100};  // those of distributions_textbook.csv
    static const double table_z[] = {0.1, 0.5, 1.0, 2.0, 3.0, 4.0, 4.6, 6.0, 6.9};
    for (size_t i = 0; i < sizeof table_steps / sizeof *table_steps; ++i)
        for (size_t j = 0; j < sizeof table_z / sizeof *table_z; ++j) rows(table_steps[i], table_z[j]);
    return 0;
}
