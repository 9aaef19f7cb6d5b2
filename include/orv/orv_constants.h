/* Numbers and keywords for the functions of orv.h. C99 and C++. */
#ifndef ORV_ORV_CONSTANTS_H
#define ORV_ORV_CONSTANTS_H

/* Version of the interface and of the library it comes with. */
#define ORV_VERSION_MAJOR 0
#define ORV_VERSION_MINOR 1
#define ORV_VERSION_PATCH 0
#define ORV_VERSION_STRING "0.1.0"

/* Scheme keywords, in the order in which they are looked for. */
#define ORV_SCHEME_2D_SEMI "2DSemi"
#define ORV_SCHEME_2D_IMPLICIT "2DImplicit"
#define ORV_SCHEME_LOD "LOD"
#define ORV_SCHEME_AFI "AFI"
#define ORV_SCHEME_ADI "ADI"
#define ORV_SCHEME_AOS "AOS" /* also stands for an unknown keyword */
#define ORV_SCHEME_AMOS "AMOS"

/* Flow keywords, in the order in which they are looked for. */
#define ORV_FLOW_PERONA_MALIK "PM" /* unknown keyword in ORVFastRestoration */
#define ORV_FLOW_WEICKERT2 "WE2"
#define ORV_FLOW_WEICKERT3 "WE3"
#define ORV_FLOW_WEICKERT4 "WE4"
#define ORV_FLOW_WEICKERT "WE"     /* the same flow as "WE4" */
#define ORV_FLOW_VARIATIONAL "VAR" /* unknown keyword in ORVFastDenoiser */
#define ORV_FLOW_TOTAL_VARIATION "TV"

/* Gradient norms. */
#define ORV_GRADIENT_NORM_CENTRAL 0
#define ORV_GRADIENT_NORM_MINMOD 1
#define ORV_GRADIENT_NORM_MIN_SLOPE 2
#define ORV_GRADIENT_NORM_MAX_SLOPE 3
#define ORV_GRADIENT_NORM_MIN_BIASED_SLOPE 4
#define ORV_GRADIENT_NORM_MAX_BIASED_SLOPE 5
#define ORV_GRADIENT_NORM_COUNT 6

/* Shrinkage keywords, in the order in which they are looked for. */
#define ORV_SHRINKAGE_SURE "SureShrink" /* also stands for an unknown keyword */
#define ORV_SHRINKAGE_VISU "VisuShrink"
#define ORV_SHRINKAGE_BROWNIAN "Brownian"

/* Wavelets. */
#define ORV_WAVELET_DAUBECHIES6 0
#define ORV_WAVELET_HAAR 1
#define ORV_WAVELET_BIORTHOGONAL_5_3 2
#define ORV_WAVELET_BIORTHOGONAL_9_7 3
#define ORV_WAVELET_BIORTHOGONAL_13_11 4
#define ORV_WAVELET_BIORTHOGONAL_9_3 5
#define ORV_WAVELET_COUNT 6

/* What ORVIHomomorphicOp returns. */
#define ORV_HOMOMORPHIC_REFLECTANCE 1
#define ORV_HOMOMORPHIC_LOG_REFLECTANCE 2
#define ORV_HOMOMORPHIC_ILLUMINATION 4
#define ORV_HOMOMORPHIC_LOG_ILLUMINATION 5
#define ORV_HOMOMORPHIC_COMPRESSED 8 /* also stands for any other number */

/* Terms of ORVIShockOp. */
#define ORV_SHOCK_SIGN 0 /* also stands for any other number */
#define ORV_SHOCK_DIFFUSIVE_SIGN 1
#define ORV_SHOCK_ARCTAN 2
#define ORV_SHOCK_DIFFUSIVE_ARCTAN 3

/* Solver ids, with the name of each in the catalogue. */
#define ORV_SOLVER_THOMAS 0               /* "Thomas" */
#define ORV_SOLVER_JACOBI 1               /* "Jacobi" */
#define ORV_SOLVER_GS 2                   /* "GS" */
#define ORV_SOLVER_SOR 3                  /* "SOR" */
#define ORV_SOLVER_DESCENT 4              /* "Descent" */
#define ORV_SOLVER_BB 5                   /* "BB" */
#define ORV_SOLVER_CBB 6                  /* "CBB" */
#define ORV_SOLVER_CG 7                   /* "CG" */
#define ORV_SOLVER_CG_NE 8                /* "CG-NE" */
#define ORV_SOLVER_CG_NR 9                /* "CG-NR" */
#define ORV_SOLVER_CGS_LS 10              /* "CGS-LS" */
#define ORV_SOLVER_CGS_LS_SHIFTED 11      /* "CGS-LSsh" */
#define ORV_SOLVER_CGI 12                 /* "CGi" */
#define ORV_SOLVER_MINRES 13              /* "MINRES" */
#define ORV_SOLVER_MR 14                  /* "MR" */
#define ORV_SOLVER_SYMMLQ 15              /* "SYMMLQ" */
#define ORV_SOLVER_QMR 16                 /* "QMR" */
#define ORV_SOLVER_TFQMR 17               /* "TFQMR" */
#define ORV_SOLVER_BICG 18                /* "BiCG" */
#define ORV_SOLVER_CGS 19                 /* "CGS" */
#define ORV_SOLVER_BICGSTAB 20            /* "BiCGStab" */
#define ORV_SOLVER_QMR_CGSTAB 21          /* "QmrCGStab" */
#define ORV_SOLVER_QMR_CGSTAB2 22         /* "QmrCGStab2" */
#define ORV_SOLVER_BICGSTAB2 23           /* "BiCGStab(2)" */
#define ORV_SOLVER_GMRES 24               /* "GMRES(m)" */
#define ORV_SOLVER_GCR 25                 /* "GCR(m)" */
#define ORV_SOLVER_MGCR 26                /* "MGCR(m)" */
#define ORV_SOLVER_GMRESR 27              /* "GMRESR" */
#define ORV_SOLVER_GMRESR_ALT 28          /* "GMRESRAlt" */
#define ORV_SOLVER_GMRES_STAR_CBB 29      /* "GMRES*-CBB" */
#define ORV_SOLVER_GMRES_STAR_BICGSTAB 30 /* "GMRES*-BiCGstab" */
#define ORV_SOLVER_RRMR 31                /* "RRMR" */
#define ORV_SOLVER_RRGMRES 32             /* "RRGMRES(m)" */
#define ORV_SOLVER_SGS_BB 33              /* "SGS-BB" */
#define ORV_SOLVER_SGS_CG 34              /* "SGS-CG" */
#define ORV_SOLVER_SGS_BICGSTAB 35        /* "SGS-BiCGStab" */
#define ORV_SOLVER_SGS_BICGSTAB2 36       /* "SGS-BiCGStab(2)" */
#define ORV_SOLVER_SSOR_BB 37             /* "SSOR-BB" */
#define ORV_SOLVER_SSOR_CG 38             /* "SSOR-CG" */
#define ORV_SOLVER_SSOR_BICGSTAB 39       /* "SSOR-BiCGStab" */
#define ORV_SOLVER_SSOR_BICGSTAB2 40      /* "SSOR-BiCGStab(2)" */
#define ORV_SOLVER_ILU0_BICGSTAB 41       /* "ILU0-BiCGStab" */
#define ORV_SOLVER_COUNT 42

/* The solver that ORVFastDenoiser takes for id 0. */
#define ORV_SOLVER_DENOISER_DEFAULT ORV_SOLVER_GMRES_STAR_CBB

/* All solvers as X(identifier, id, name), for menus and tables. */
#define ORV_SOLVER_TABLE(X)                       \
    X(THOMAS, 0, "Thomas")                        \
    X(JACOBI, 1, "Jacobi")                        \
    X(GS, 2, "GS")                                \
    X(SOR, 3, "SOR")                              \
    X(DESCENT, 4, "Descent")                      \
    X(BB, 5, "BB")                                \
    X(CBB, 6, "CBB")                              \
    X(CG, 7, "CG")                                \
    X(CG_NE, 8, "CG-NE")                          \
    X(CG_NR, 9, "CG-NR")                          \
    X(CGS_LS, 10, "CGS-LS")                       \
    X(CGS_LS_SHIFTED, 11, "CGS-LSsh")             \
    X(CGI, 12, "CGi")                             \
    X(MINRES, 13, "MINRES")                       \
    X(MR, 14, "MR")                               \
    X(SYMMLQ, 15, "SYMMLQ")                       \
    X(QMR, 16, "QMR")                             \
    X(TFQMR, 17, "TFQMR")                         \
    X(BICG, 18, "BiCG")                           \
    X(CGS, 19, "CGS")                             \
    X(BICGSTAB, 20, "BiCGStab")                   \
    X(QMR_CGSTAB, 21, "QmrCGStab")                \
    X(QMR_CGSTAB2, 22, "QmrCGStab2")              \
    X(BICGSTAB2, 23, "BiCGStab(2)")               \
    X(GMRES, 24, "GMRES(m)")                      \
    X(GCR, 25, "GCR(m)")                          \
    X(MGCR, 26, "MGCR(m)")                        \
    X(GMRESR, 27, "GMRESR")                       \
    X(GMRESR_ALT, 28, "GMRESRAlt")                \
    X(GMRES_STAR_CBB, 29, "GMRES*-CBB")           \
    X(GMRES_STAR_BICGSTAB, 30, "GMRES*-BiCGstab") \
    X(RRMR, 31, "RRMR")                           \
    X(RRGMRES, 32, "RRGMRES(m)")                  \
    X(SGS_BB, 33, "SGS-BB")                       \
    X(SGS_CG, 34, "SGS-CG")                       \
    X(SGS_BICGSTAB, 35, "SGS-BiCGStab")           \
    X(SGS_BICGSTAB2, 36, "SGS-BiCGStab(2)")       \
    X(SSOR_BB, 37, "SSOR-BB")                     \
    X(SSOR_CG, 38, "SSOR-CG")                     \
    X(SSOR_BICGSTAB, 39, "SSOR-BiCGStab")         \
    X(SSOR_BICGSTAB2, 40, "SSOR-BiCGStab(2)")     \
    X(ILU0_BICGSTAB, 41, "ILU0-BiCGStab")

#endif /* ORV_ORV_CONSTANTS_H */
