/* Stand-in for the PIC register header, for the syntax check of a program's C with a host C
 * compiler (tests/program). It declares only what the code file uses, with the same names and
 * kinds as the compiler's own header: each register is a volatile byte, each bit name stands
 * for a bit field of the register's bits structure. Addresses and configuration bits are
 * placeholders. */
#ifndef ROVANTA_STUB_PIC16REGS_H
#define ROVANTA_STUB_PIC16REGS_H

#include <stdint.h>

#define _CONFIG   0x2007
#define _HS_OSC   0x3FFE
#define _WDT_OFF  0x3FFB
#define _LVP_OFF  0x3F7F
#define _PWRTE_ON 0x3FF7

extern volatile unsigned char PORTA, PORTB, PORTC, PORTD, PORTE;
extern volatile unsigned char TRISA, TRISB, TRISC, TRISD, TRISE;
extern volatile unsigned char ADCON0, ADCON1, ADRESH, ADRESL;
extern volatile unsigned char PR2, T2CON, CCP1CON, CCP2CON, CCPR1L, CCPR2L;
extern volatile unsigned char OPTION_REG, TMR0, T1CON, TMR1H, TMR1L;
extern volatile unsigned char SSPADD, SSPSTAT, SSPCON;

typedef struct {
    unsigned RB0 : 1, RB1 : 1, RB2 : 1, RB3 : 1, RB4 : 1, RB5 : 1, RB6 : 1, RB7 : 1;
} stub_PORTBbits_t;
typedef struct {
    unsigned RC0 : 1, RC1 : 1, RC2 : 1, RC3 : 1, RC4 : 1, RC5 : 1, RC6 : 1, RC7 : 1;
} stub_PORTCbits_t;
typedef struct {
    unsigned ADON : 1, : 1, GO_DONE : 1, CHS0 : 1, CHS1 : 1, CHS2 : 1, ADCS0 : 1, ADCS1 : 1;
} stub_ADCON0bits_t;
typedef struct {
    unsigned RBIF : 1, INTF : 1, T0IF : 1, RBIE : 1, INTE : 1, T0IE : 1, PEIE : 1, GIE : 1;
} stub_INTCONbits_t;
typedef struct {
    unsigned TMR1IF : 1, TMR2IF : 1, CCP1IF : 1, SSPIF : 1, TXIF : 1, RCIF : 1, ADIF : 1, PSPIF : 1;
} stub_PIR1bits_t;
typedef struct {
    unsigned TMR1IE : 1, TMR2IE : 1, CCP1IE : 1, SSPIE : 1, TXIE : 1, RCIE : 1, ADIE : 1, PSPIE : 1;
} stub_PIE1bits_t;
typedef struct {
    unsigned TMR1ON : 1, TMR1CS : 1, NOT_T1SYNC : 1, T1OSCEN : 1, T1CKPS0 : 1, T1CKPS1 : 1, : 2;
} stub_T1CONbits_t;

extern volatile stub_PORTBbits_t PORTBbits;
extern volatile stub_PORTCbits_t PORTCbits;
extern volatile stub_ADCON0bits_t ADCON0bits;
extern volatile stub_INTCONbits_t INTCONbits;
extern volatile stub_PIR1bits_t PIR1bits;
extern volatile stub_PIE1bits_t PIE1bits;
extern volatile stub_T1CONbits_t T1CONbits;

#define RB0 PORTBbits.RB0
#define RB1 PORTBbits.RB1
#define RB2 PORTBbits.RB2
#define RB3 PORTBbits.RB3
#define RB5 PORTBbits.RB5
#define RC0 PORTCbits.RC0
#define RC5 PORTCbits.RC5
#define GO_DONE ADCON0bits.GO_DONE
#define T0IF INTCONbits.T0IF
#define T0IE INTCONbits.T0IE
#define PEIE INTCONbits.PEIE
#define GIE INTCONbits.GIE
#define TMR1IF PIR1bits.TMR1IF
#define TMR1IE PIE1bits.TMR1IE
#define TMR1ON T1CONbits.TMR1ON

#endif
