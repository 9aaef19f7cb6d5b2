/** @file
 * Numbers and keywords for the functions of orv.h. C99 and C++. */
#ifndef ORV_ORV_CONSTANTS_H
#define ORV_ORV_CONSTANTS_H

/** @name Version
 * Of the interface and of the library it comes with.
 * @{ */
#define ORV_VERSION_MAJOR 0        /**< changes when hosts have to change */
#define ORV_VERSION_MINOR 1        /**< changes when results or abilities do */
#define ORV_VERSION_PATCH 0        /**< changes with fixes alone */
#define ORV_VERSION_STRING "0.1.0" /**< the three with points between them */
/** @} */

/** @name Scheme keywords
 * In the order in which they are looked for. The first two solve one system for the whole picture,
 * the others one for each row and column.
 * @{ */
#define ORV_SCHEME_2D_SEMI "2DSemi"         /**< semi-implicit */
#define ORV_SCHEME_2D_IMPLICIT "2DImplicit" /**< half a step explicit, half a step implicit */
#define ORV_SCHEME_LOD "LOD"                /**< locally one-dimensional: rows, then columns */
#define ORV_SCHEME_AFI "AFI"                /**< the mean of LOD in both orders */
#define ORV_SCHEME_ADI "ADI"                /**< alternating directions */
#define ORV_SCHEME_AOS "AOS"                /**< additive operator splitting; unknown keyword */
#define ORV_SCHEME_AMOS "AMOS" /**< Crank-Nicolson products, the mean of both orders */
/** @} */

/** @name Flow keywords
 * In the order in which they are looked for. With s the squared slope over the squared contrast:
 * @{ */
#define ORV_FLOW_PERONA_MALIK "PM"    /**< 1 / (1 + s); unknown keyword of restoration */
#define ORV_FLOW_WEICKERT2 "WE2"      /**< 1 - exp(-2.33666 / s^2) */
#define ORV_FLOW_WEICKERT3 "WE3"      /**< 1 - exp(-2.9183 / s^3) */
#define ORV_FLOW_WEICKERT4 "WE4"      /**< 1 - exp(-3.31488 / s^4) */
#define ORV_FLOW_WEICKERT "WE"        /**< the same flow as "WE4" */
#define ORV_FLOW_VARIATIONAL "VAR"    /**< 1 / sqrt(1 + s); unknown keyword of denoising */
#define ORV_FLOW_TOTAL_VARIATION "TV" /**< 1 / sqrt(0.0001 + s) */
/** @} */

/** @name Gradient norms
 * How the slope of a pixel is measured.
 * @{ */
#define ORV_GRADIENT_NORM_CENTRAL 0          /**< central differences */
#define ORV_GRADIENT_NORM_MINMOD 1           /**< the smaller of both sides where they agree */
#define ORV_GRADIENT_NORM_MIN_SLOPE 2        /**< the least of eight directions */
#define ORV_GRADIENT_NORM_MAX_SLOPE 3        /**< the greatest of eight directions */
#define ORV_GRADIENT_NORM_MIN_BIASED_SLOPE 4 /**< the least, joined by a second slope */
#define ORV_GRADIENT_NORM_MAX_BIASED_SLOPE 5 /**< the greatest, joined by a second slope */
#define ORV_GRADIENT_NORM_COUNT 6            /**< how many there are */
/** @} */

/** @name Shrinkage keywords
 * In the order in which they are looked for.
 * @{ */
#define ORV_SHRINKAGE_SURE "SureShrink"   /**< least risk, band by band; unknown keyword */
#define ORV_SHRINKAGE_VISU "VisuShrink"   /**< one threshold from noise and size */
#define ORV_SHRINKAGE_BROWNIAN "Brownian" /**< until what is left is like noise */
/** @} */

/** @name Wavelets
 * @{ */
#define ORV_WAVELET_DAUBECHIES6 0        /**< Daubechies, 6 taps */
#define ORV_WAVELET_HAAR 1               /**< Haar, 2 taps */
#define ORV_WAVELET_BIORTHOGONAL_5_3 2   /**< biorthogonal, 5 and 3 taps */
#define ORV_WAVELET_BIORTHOGONAL_9_7 3   /**< biorthogonal, 9 and 7 taps */
#define ORV_WAVELET_BIORTHOGONAL_13_11 4 /**< biorthogonal, 13 and 11 taps */
#define ORV_WAVELET_BIORTHOGONAL_9_3 5   /**< biorthogonal, 9 and 3 taps */
#define ORV_WAVELET_COUNT 6              /**< how many there are */
/** @} */

/** @name Modes of the homomorphic filter
 * What ORVIHomomorphicOp returns.
 * @{ */
#define ORV_HOMOMORPHIC_REFLECTANCE 1      /**< picture over illumination */
#define ORV_HOMOMORPHIC_LOG_REFLECTANCE 2  /**< its natural logarithm */
#define ORV_HOMOMORPHIC_ILLUMINATION 4     /**< blurred in logarithms */
#define ORV_HOMOMORPHIC_LOG_ILLUMINATION 5 /**< its natural logarithm */
#define ORV_HOMOMORPHIC_COMPRESSED 8       /**< illumination compressed; any other number */
/** @} */

/** @name Methods of the shock filter
 * Which term ORVIShockOp follows.
 * @{ */
#define ORV_SHOCK_SIGN 0             /**< sign; any other number */
#define ORV_SHOCK_DIFFUSIVE_SIGN 1   /**< sign, with diffusion across the gradient */
#define ORV_SHOCK_ARCTAN 2           /**< arctangent, which hardens with the iterations */
#define ORV_SHOCK_DIFFUSIVE_ARCTAN 3 /**< arctangent, with diffusion across the gradient */
/** @} */

/** @name Solvers
 * Their ids, with the name of each in the catalogue.
 * @{ */
#define ORV_SOLVER_THOMAS 0               /**< "Thomas" */
#define ORV_SOLVER_JACOBI 1               /**< "Jacobi" */
#define ORV_SOLVER_GS 2                   /**< "GS" */
#define ORV_SOLVER_SOR 3                  /**< "SOR" */
#define ORV_SOLVER_DESCENT 4              /**< "Descent" */
#define ORV_SOLVER_BB 5                   /**< "BB" */
#define ORV_SOLVER_CBB 6                  /**< "CBB" */
#define ORV_SOLVER_CG 7                   /**< "CG" */
#define ORV_SOLVER_CG_NE 8                /**< "CG-NE" */
#define ORV_SOLVER_CG_NR 9                /**< "CG-NR" */
#define ORV_SOLVER_CGS_LS 10              /**< "CGS-LS" */
#define ORV_SOLVER_CGS_LS_SHIFTED 11      /**< "CGS-LSsh" */
#define ORV_SOLVER_CGI 12                 /**< "CGi" */
#define ORV_SOLVER_MINRES 13              /**< "MINRES" */
#define ORV_SOLVER_MR 14                  /**< "MR" */
#define ORV_SOLVER_SYMMLQ 15              /**< "SYMMLQ" */
#define ORV_SOLVER_QMR 16                 /**< "QMR" */
#define ORV_SOLVER_TFQMR 17               /**< "TFQMR" */
#define ORV_SOLVER_BICG 18                /**< "BiCG" */
#define ORV_SOLVER_CGS 19                 /**< "CGS" */
#define ORV_SOLVER_BICGSTAB 20            /**< "BiCGStab" */
#define ORV_SOLVER_QMR_CGSTAB 21          /**< "QmrCGStab" */
#define ORV_SOLVER_QMR_CGSTAB2 22         /**< "QmrCGStab2" */
#define ORV_SOLVER_BICGSTAB2 23           /**< "BiCGStab(2)" */
#define ORV_SOLVER_GMRES 24               /**< "GMRES(m)" */
#define ORV_SOLVER_GCR 25                 /**< "GCR(m)" */
#define ORV_SOLVER_MGCR 26                /**< "MGCR(m)" */
#define ORV_SOLVER_GMRESR 27              /**< "GMRESR" */
#define ORV_SOLVER_GMRESR_ALT 28          /**< "GMRESRAlt" */
#define ORV_SOLVER_GMRES_STAR_CBB 29      /**< "GMRES*-CBB" */
#define ORV_SOLVER_GMRES_STAR_BICGSTAB 30 /**< "GMRES*-BiCGstab" */
#define ORV_SOLVER_RRMR 31                /**< "RRMR" */
#define ORV_SOLVER_RRGMRES 32             /**< "RRGMRES(m)" */
#define ORV_SOLVER_SGS_BB 33              /**< "SGS-BB" */
#define ORV_SOLVER_SGS_CG 34              /**< "SGS-CG" */
#define ORV_SOLVER_SGS_BICGSTAB 35        /**< "SGS-BiCGStab" */
#define ORV_SOLVER_SGS_BICGSTAB2 36       /**< "SGS-BiCGStab(2)" */
#define ORV_SOLVER_SSOR_BB 37             /**< "SSOR-BB" */
#define ORV_SOLVER_SSOR_CG 38             /**< "SSOR-CG" */
#define ORV_SOLVER_SSOR_BICGSTAB 39       /**< "SSOR-BiCGStab" */
#define ORV_SOLVER_SSOR_BICGSTAB2 40      /**< "SSOR-BiCGStab(2)" */
#define ORV_SOLVER_ILU0_BICGSTAB 41       /**< "ILU0-BiCGStab" */
#define ORV_SOLVER_COUNT 42               /**< how many there are */

/** The solver that ORVFastDenoiser takes for id 0. */
#define ORV_SOLVER_DENOISER_DEFAULT ORV_SOLVER_GMRES_STAR_CBB

/** All solvers, for menus and tables.
 *
 * @param X                 a macro, which gets X(identifier, id, name) for each */
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
/** @} */

#endif /* ORV_ORV_CONSTANTS_H */
