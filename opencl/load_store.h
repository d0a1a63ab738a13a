/* vloadn and vstoren of OpenCL C, which carry vectors between the built-ins and memory: inlined to plain
 * loads and stores that need no more than the alignment of an element. */

#define LOAD(space, T, W)                                                                                    \
    T##W __attribute__((overloadable, always_inline)) vload##W(size_t offset, const space T *p) {            \
        return *(const space T##W##_unaligned *)(p + W * offset);                                            \
    }
#define STORE(space, T, W)                                                                                   \
    void __attribute__((overloadable, always_inline)) vstore##W(T##W data, size_t offset, space T *p) {      \
        *(space T##W##_unaligned *)(p + W * offset) = data;                                                  \
    }
/* Three elements in memory are 12 bytes and a vector of three is 16. */
#define LOAD_3(space, T)                                                                                     \
    T##3 __attribute__((overloadable, always_inline)) vload3(size_t offset, const space T *p) {              \
        p += 3 * offset;                                                                                     \
        return (T##3)(p[0], p[1], p[2]);                                                                     \
    }
#define STORE_3(space, T)                                                                                    \
    void __attribute__((overloadable, always_inline)) vstore3(T##3 data, size_t offset, space T *p) {        \
        p += 3 * offset;                                                                                     \
        p[0] = data.s0, p[1] = data.s1, p[2] = data.s2;                                                      \
    }

#define LOADS(space, T)                                                                                      \
    LOAD(space, T, 2) LOAD_3(space, T) LOAD(space, T, 4) LOAD(space, T, 8) LOAD(space, T, 16)
#define STORES(space, T)                                                                                     \
    STORE(space, T, 2) STORE_3(space, T) STORE(space, T, 4) STORE(space, T, 8) STORE(space, T, 16)
#define UNALIGNED(T, W) typedef T##W __attribute__((aligned(sizeof(T)))) T##W##_unaligned
#define LOADS_AND_STORES(T)                                                                                  \
    UNALIGNED(T, 2);                                                                                         \
    UNALIGNED(T, 4);                                                                                         \
    UNALIGNED(T, 8);                                                                                         \
    UNALIGNED(T, 16);                                                                                        \
    LOADS(__constant, T)                                                                                     \
    LOADS(__global, T)                                                                                       \
    LOADS(__local, T) LOADS(__private, T) STORES(__global, T) STORES(__local, T) STORES(__private, T)

LOADS_AND_STORES(char)
LOADS_AND_STORES(uchar)
LOADS_AND_STORES(short)
LOADS_AND_STORES(ushort)
LOADS_AND_STORES(int)
LOADS_AND_STORES(uint)
LOADS_AND_STORES(long)
LOADS_AND_STORES(ulong)
LOADS_AND_STORES(float)
LOADS_AND_STORES(double)
