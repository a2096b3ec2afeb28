/*
 * KT5_Rovanta.c - code file of the Rovanta two-wheeled robot.
 *
 * This one file is read two ways by the component:
 *   - the definition sections in the comment below are read key by key as a profile file;
 *   - the C blocks, each between a line  / *<Block>_Start* /  and a line  / *<Block>_End* /
 *     (written without the blanks), are cut out line by line and handed to Kestrone, which
 *     pastes them into the one C program it builds for the robot's PIC16F877A.
 *
 * Conventions of the C blocks:
 *   - DefinesCode is pasted once, at file scope: registers, configuration word, wiring,
 *     settings, globals and the small helpers (rov_...) that the macros share.
 *   - InitialisationCode and InterruptCode are statements. Kestrone puts the first at the
 *     start of main() and the second inside its one interrupt routine.
 *   - Every Macro_<Name> block is the BODY of a function. Kestrone writes the function around
 *     it from [MacroReturns] and the [MacroParameters_<Name>]/[MacroParamTypes_<Name>]
 *     sections, e.g.  void DriveForwards(char Speed) { <block> } , so the body uses the
 *     parameter names given there. The lines around each block below show that wrapper; they
 *     are not part of any block, and they keep this file an ordinary C program once the
 *     settings are filled in.
 *   - Settings reach the code only through Kestrone's tokens (a percent sign and a letter
 *     a to p), replaced before compiling. The numbers stand in DefinesCode, each in a #define
 *     of its own; every choice they make is taken by the preprocessor (#if) or at run time,
 *     so that no setting leaves the compiler a constant condition to warn about. The two
 *     reserved texts (m and n) are used nowhere: a user's text can end a comment, a string
 *     or a line, and no place in C holds any text safely.
 *
 * Written for SDCC's pic14 port: bare register bit names (T0IF, RB5, ...), char and int are
 * 8 and 16 bits, no floating point. A crystal of 20 MHz (HS) is assumed. A function that
 * returns a 16-bit value does so from one return at its end: with several, the port's
 * optimizer can return a wrong high byte.
 *
 * Wiring of the robot:
 *   RD0..RD7   LED 0..7 (high lights the LED)
 *   RB0, RB1   left, right push switch (high while pressed, external pull-downs)
 *   RB2, RB3   left, right line sensor (high over the line)
 *   RB5        piezo sounder
 *   RC2/CCP1   left motor PWM,  RC0 left motor direction  (high = backwards)
 *   RC1/CCP2   right motor PWM, RC5 right motor direction (high = backwards)
 *   RC3, RC4   I2C expansion port (SCL, SDA)
 *   AN0 (RA0)  LDR             AN1 (RA1)  microphone
 *   AN2 (RA2)  IR left         AN3 (RA3)  IR forward        AN4 (RA5)  IR right
 */

/*
; Definition sections. Ports: 0=A 1=B 2=C 3=D 4=E. Directions: 1=input, 2=output.
; SamePortAsPinX holds the id (counted from 0) of the pin whose port a pin shares.
; Pin order is fixed: 1..8 LED 0..7, 9/10 left/right switch, 11/12 left/right line sensor.
; Macro order is fixed for entries 5..21 (the simulated macros).

[Settings]
IsAnalogue=0
MultipleAllowed=0
Description=Rovanta two-wheeled robot

[Pins]
Count=12
1=LED 0
2=LED 1
3=LED 2
4=LED 3
5=LED 4
6=LED 5
7=LED 6
8=LED 7
9=Left switch
10=Right switch
11=Left line sensor
12=Right line sensor

[PinPort]
1=3
2=3
3=3
4=3
5=3
6=3
7=3
8=3
9=1
10=1
11=1
12=1

[PinDesiredBit]
1=0
2=1
3=2
4=3
5=4
6=5
7=6
8=7
9=0
10=1
11=2
12=3

[PinDirection]
1=2
2=2
3=2
4=2
5=2
6=2
7=2
8=2
9=1
10=1
11=1
12=1

; The robot is wired on a board: no pin can move.
[PinMustUsePort]
1=1
2=1
3=1
4=1
5=1
6=1
7=1
8=1
9=1
10=1
11=1
12=1

[PinMustUsePin]
1=1
2=1
3=1
4=1
5=1
6=1
7=1
8=1
9=1
10=1
11=1
12=1

[SamePortAsPinX]
1=0
2=0
3=0
4=0
5=0
6=0
7=0
8=0
9=8
10=8
11=8
12=8

[PinValue]
1=0
2=0
3=0
4=0
5=0
6=0
7=0
8=0
9=0
10=0
11=0
12=0

[MacroNames]
Count=21
1=ReadAnalogue
2=WaitForStart
3=SetMotorTrim
4=TestLevel
5=DriveForwards
6=DriveBackwards
7=DriveStop
8=SpinLeft
9=SpinRight
10=SetMotors
11=WriteLeds
12=LedOn
13=LedOff
14=ReadSwitch
15=WaitSwitch
16=PlayTone
17=ReadMic
18=ReadLdr
19=TestSideSensor
20=ReadSideSensor
21=ReadLine

[MacroReturns]
1=int
2=void
3=void
4=char
5=void
6=void
7=void
8=void
9=void
10=void
11=void
12=void
13=void
14=char
15=int
16=void
17=int
18=int
19=char
20=int
21=char

[MacroIsPrivate]
1=1
2=0
3=0
4=0
5=0
6=0
7=0
8=0
9=0
10=0
11=0
12=0
13=0
14=0
15=0
16=0
17=0
18=0
19=0
20=0
21=0

[MacroParameters_ReadAnalogue]
Count=1
1=Channel
[MacroParamTypes_ReadAnalogue]
1=char

[MacroParameters_SetMotorTrim]
Count=1
1=Trim
[MacroParamTypes_SetMotorTrim]
1=char

[MacroParameters_TestLevel]
Count=1
1=Sensor
[MacroParamTypes_TestLevel]
1=char

[MacroParameters_DriveForwards]
Count=1
1=Speed
[MacroParamTypes_DriveForwards]
1=char

[MacroParameters_DriveBackwards]
Count=1
1=Speed
[MacroParamTypes_DriveBackwards]
1=char

[MacroParameters_SpinLeft]
Count=1
1=Speed
[MacroParamTypes_SpinLeft]
1=char

[MacroParameters_SpinRight]
Count=1
1=Speed
[MacroParamTypes_SpinRight]
1=char

[MacroParameters_SetMotors]
Count=4
1=LeftHigh
2=LeftLow
3=RightHigh
4=RightLow
[MacroParamTypes_SetMotors]
1=char
2=char
3=char
4=char

[MacroParameters_WriteLeds]
Count=1
1=Bits
[MacroParamTypes_WriteLeds]
1=char

[MacroParameters_LedOn]
Count=1
1=Led
[MacroParamTypes_LedOn]
1=char

[MacroParameters_LedOff]
Count=1
1=Led
[MacroParamTypes_LedOff]
1=char

[MacroParameters_ReadSwitch]
Count=1
1=Side
[MacroParamTypes_ReadSwitch]
1=char

[MacroParameters_WaitSwitch]
Count=1
1=Side
[MacroParamTypes_WaitSwitch]
1=char

[MacroParameters_PlayTone]
Count=3
1=Frequency
2=DurationHigh
3=DurationLow
[MacroParamTypes_PlayTone]
1=char
2=char
3=char

[MacroParameters_TestSideSensor]
Count=1
1=Side
[MacroParamTypes_TestSideSensor]
1=char

[MacroParameters_ReadSideSensor]
Count=1
1=Side
[MacroParamTypes_ReadSideSensor]
1=char

[MacroParameters_ReadLine]
Count=1
1=Side
[MacroParamTypes_ReadLine]
1=char

; Everything below belongs to this section, which nothing looks up, so that a C line with
; an "=" in it can never pass for an entry of a section above.
[EndOfDefinitions]
*/

/*DefinesCode_Start*/
#include <stdint.h>
#include <pic16regs.h>

/* HS crystal, no watchdog, no low-voltage programming (RB3 is a line sensor), power-up timer. */
static __code uint16_t __at(_CONFIG) cfg = _HS_OSC & _WDT_OFF & _LVP_OFF & _PWRTE_ON;

/* Settings, filled in by Kestrone. */
#define ROV_RETURN_INT      (%a)    /* analogue reads: 0 = 8 bits (0..255), else 10 bits */
#define ROV_THRESH_LEFT     (%b)    /* IR thresholds of TestSideSensor */
#define ROV_THRESH_FRONT    (%c)
#define ROV_THRESH_RIGHT    (%d)
#define ROV_THRESH_MIC      (%e)    /* thresholds of TestLevel */
#define ROV_THRESH_LDR      (%f)
#define ROV_USE_I2C         (%g)    /* non-zero: RC3/RC4 run the I2C expansion port */
#define ROV_WAIT_FOR_BUTTON (%h)    /* non-zero: wait for a switch before the program runs */
#define ROV_RESERVED_BOOL1  (%i)
#define ROV_RESERVED_BOOL2  (%j)
#define ROV_RESERVED_INT1   (%k)
#define ROV_RESERVED_INT2   (%l)
#define ROV_BIAS_LEFT_SET   (%o)    /* percent taken off the left motor's duty */
#define ROV_BIAS_RIGHT_SET  (%p)    /* percent taken off the right motor's duty */

/* A bias beyond 100 percent would stop the motor for good: hold it there. */
#if ROV_BIAS_LEFT_SET > 100
#define ROV_BIAS_LEFT 100
#else
#define ROV_BIAS_LEFT ROV_BIAS_LEFT_SET
#endif
#if ROV_BIAS_RIGHT_SET > 100
#define ROV_BIAS_RIGHT 100
#else
#define ROV_BIAS_RIGHT ROV_BIAS_RIGHT_SET
#endif

/* Clock and timing. Timer 0 at 1:32 counts 156.25 per millisecond at 20 MHz. */
#define ROV_XTAL_HZ       20000000UL
#define ROV_TMR0_RELOAD   ((unsigned char)(256 - 156))
#define ROV_DEBOUNCE_MS   20
#define ROV_ADC_SETTLE    20        /* loop passes, > 20 us of acquisition time */
/* Timer 1 at 1:4: half a period of a tone of f x 10 Hz is ROV_TONE_TICKS / f counts. */
#define ROV_TONE_TICKS    ((unsigned int)(ROV_XTAL_HZ / 320UL))
/* Counts that Timer 1 stands still for while the interrupt adds the next half period to it
   (about 20 instruction cycles of SDCC 4.2's code, counted in its listing and in gpsim). */
#define ROV_TONE_STILL    5u
#define ROV_I2C_BRG       ((unsigned char)(ROV_XTAL_HZ / (4UL * 100000UL) - 1))  /* 100 kHz */

/* Wiring. */
#define ROV_LEDS          PORTD
#define ROV_SWITCH_LEFT   RB0
#define ROV_SWITCH_RIGHT  RB1
#define ROV_LINE_LEFT     RB2
#define ROV_LINE_RIGHT    RB3
#define ROV_PIEZO         RB5
#define ROV_DIR_LEFT      RC0
#define ROV_DIR_RIGHT     RC5
#define ROV_PWM_LEFT      CCPR1L
#define ROV_PWM_RIGHT     CCPR2L
#define ROV_AN_LDR        0
#define ROV_AN_MIC        1
#define ROV_AN_IR_LEFT    2         /* the IR channels in side order: left, front, right */
#define ROV_AN_IR_FRONT   3
#define ROV_AN_IR_RIGHT   4

#define ROV_LEFT          0
#define ROV_RIGHT         1

/* ADCON1: right-justified result, AN0..AN4 analogue, RE0..RE2 digital, Vref = Vdd.
   ADCON0: conversion clock Fosc/32 (20 MHz allows no faster), converter on. */
#define ROV_ADCON1        0x82
#define ROV_ADCON0_BASE   0x81

/* The pic14 port puts the locals and temporaries of every function of a program, the user's
   included, in one section that must fit one bank (96 bytes): the helpers work in bytes and
   keep their state in globals, which the linker places in any bank. */
static volatile unsigned char rov_tick;         /* counts milliseconds, wraps */
static volatile unsigned char rov_tone_hi;      /* Timer 1 reload of the tone playing */
static volatile unsigned char rov_tone_lo;
static unsigned char rov_leds;                  /* shadow of the LED port: no read-modify-write */
static unsigned char rov_switch_latch;          /* WaitSwitch saw a switch down */
static unsigned char rov_speed[2];              /* last commanded speed size, for a new trim */
static unsigned char rov_backwards[2];          /* and its direction, 1 = backwards */
static unsigned int rov_scale[2];               /* duty scale in 1/256, from bias or trim */

static void rov_wait_ms(unsigned int ms)
{
    unsigned char seen = rov_tick;              /* one byte: read whole even mid-interrupt */
    while (ms != 0) {
        if (rov_tick != seen) {
            seen++;
            ms--;
        }
    }
}

static unsigned int rov_bias_scale(unsigned char percent)
{
    if (percent > 100)
        percent = 100;
    return (unsigned int)(((100u - percent) * 256u) / 100u);
}

static unsigned char rov_led_mask(unsigned char led)
{
    return (unsigned char)(1u << (led & 7));
}

static unsigned char rov_duty(unsigned char side)
{
    return (unsigned char)(((unsigned int)rov_speed[side] * rov_scale[side]) >> 8);
}

/* Both motors as last commanded: direction pins and PWM duties. */
static void rov_motors(void)
{
    ROV_DIR_LEFT = rov_backwards[ROV_LEFT];
    ROV_PWM_LEFT = rov_duty(ROV_LEFT);
    ROV_DIR_RIGHT = rov_backwards[ROV_RIGHT];
    ROV_PWM_RIGHT = rov_duty(ROV_RIGHT);
}

/* Both motors at one speed; bit 0 of backwards turns the left one back, bit 1 the right. */
static void rov_pair(unsigned char speed, unsigned char backwards)
{
    rov_speed[ROV_LEFT] = speed;
    rov_speed[ROV_RIGHT] = speed;
    rov_backwards[ROV_LEFT] = backwards & 1;
    rov_backwards[ROV_RIGHT] = backwards >> 1;
    rov_motors();
}

/* The size of a signed 16-bit number given as two bytes, held at 255. In bytes, so that
   nothing depends on how int wraps. */
static unsigned char rov_size(unsigned char high, unsigned char low)
{
    if (high & 0x80) {
        low = ~low;
        high = ~high;
        if (++low == 0)
            high++;
    }
    if (high)
        low = 255;
    return low;
}

/* A reading on the scale that the settings choose: the converter's 10 bits or the top 8. */
static unsigned int rov_analogue(unsigned char channel)
{
    volatile unsigned char settle;

    ADCON0 = (unsigned char)(ROV_ADCON0_BASE | ((channel & 7) << 3));
    for (settle = 0; settle < ROV_ADC_SETTLE; settle++) {
    }
    GO_DONE = 1;
    while (GO_DONE) {
    }
#if ROV_RETURN_INT
    return ((unsigned int)ADRESH << 8) | ADRESL;
#else
    return (unsigned char)((ADRESH << 6) | (ADRESL >> 2));
#endif
}

/* 2 if the channel reads above the threshold, 1 if below, 0 at it. A threshold is any
   Integer, far outside the readings' range at times: it is compared as an argument, never as
   a constant that would leave the compiler a comparison always true or false to warn about. */
static unsigned char rov_against(unsigned char channel, int threshold)
{
    int reading = (int)rov_analogue(channel);
    unsigned char where = 0;
    if (reading > threshold)
        where = 2;
    else if (reading < threshold)
        where = 1;
    return where;
}

/* 0 for left (0, 'l', 'L'), 1 for forward (1, 'f', 'F'), 2 for anything else: right. */
static unsigned char rov_side(unsigned char side)
{
    unsigned char index = 2;
    if (side == 0 || side == 'l' || side == 'L')
        index = 0;
    else if (side == 1 || side == 'f' || side == 'F')
        index = 1;
    return index;
}

/* The switch of a side; only the left side has a switch of its own, all others are right. */
static unsigned char rov_switch(unsigned char side)
{
    unsigned char down = ROV_SWITCH_RIGHT;
    if (rov_side(side) == 0)
        down = ROV_SWITCH_LEFT;
    return down;
}

/* Tone of frequency x 10 Hz on the piezo, toggled by the Timer 1 interrupt; 0 is a rest. */
static void rov_tone_start(unsigned char frequency)
{
    unsigned int reload;

    if (frequency == 0)
        return;
    reload = (unsigned int)(0u - (ROV_TONE_TICKS / frequency - ROV_TONE_STILL));
    rov_tone_hi = (unsigned char)(reload >> 8);
    rov_tone_lo = (unsigned char)reload;
    TMR1ON = 0;
    TMR1H = rov_tone_hi;
    TMR1L = rov_tone_lo;
    TMR1IF = 0;
    TMR1ON = 1;
}

static void rov_tone_stop(void)
{
    TMR1ON = 0;
    ROV_PIEZO = 0;
}

/* A press and release of either switch, debounced. */
static void rov_wait_for_start(void)
{
    while (!ROV_SWITCH_LEFT && !ROV_SWITCH_RIGHT) {
    }
    rov_wait_ms(ROV_DEBOUNCE_MS);
    while (ROV_SWITCH_LEFT || ROV_SWITCH_RIGHT) {
    }
    rov_wait_ms(ROV_DEBOUNCE_MS);
}
/*DefinesCode_End*/

int ReadAnalogue(char Channel)
{
/*Macro_ReadAnalogue_Start*/
    return (int)rov_analogue((unsigned char)Channel);
/*Macro_ReadAnalogue_End*/
}

void WaitForStart(void)
{
/*Macro_WaitForStart_Start*/
    rov_wait_for_start();
/*Macro_WaitForStart_End*/
}

void SetMotorTrim(char Trim)
{
/*Macro_SetMotorTrim_Start*/
    /* Trim -100..100 as a signed byte: below 0 slows the left motor, above 0 the right. */
    if ((signed char)Trim < 0) {
        rov_scale[ROV_LEFT] = rov_bias_scale((unsigned char)(0u - (unsigned char)Trim));
        rov_scale[ROV_RIGHT] = rov_bias_scale(0);
    } else {
        rov_scale[ROV_LEFT] = rov_bias_scale(0);
        rov_scale[ROV_RIGHT] = rov_bias_scale((unsigned char)Trim);
    }
    rov_motors();
/*Macro_SetMotorTrim_End*/
}

char TestLevel(char Sensor)
{
/*Macro_TestLevel_Start*/
    /* Sensor 0: LDR brighter than its threshold; any other: microphone louder than its own. */
    unsigned char where;
    if (Sensor == 0)
        where = rov_against(ROV_AN_LDR, ROV_THRESH_LDR);
    else
        where = rov_against(ROV_AN_MIC, ROV_THRESH_MIC);
    return where == 2 ? 1 : 0;
/*Macro_TestLevel_End*/
}

void DriveForwards(char Speed)
{
/*Macro_DriveForwards_Start*/
    rov_pair((unsigned char)Speed, 0);
/*Macro_DriveForwards_End*/
}

void DriveBackwards(char Speed)
{
/*Macro_DriveBackwards_Start*/
    rov_pair((unsigned char)Speed, 3);
/*Macro_DriveBackwards_End*/
}

void DriveStop(void)
{
/*Macro_DriveStop_Start*/
    rov_pair(0, 0);
/*Macro_DriveStop_End*/
}

void SpinLeft(char Speed)
{
/*Macro_SpinLeft_Start*/
    rov_pair((unsigned char)Speed, 1);
/*Macro_SpinLeft_End*/
}

void SpinRight(char Speed)
{
/*Macro_SpinRight_Start*/
    rov_pair((unsigned char)Speed, 2);
/*Macro_SpinRight_End*/
}

void SetMotors(char LeftHigh, char LeftLow, char RightHigh, char RightLow)
{
/*Macro_SetMotors_Start*/
    /* Each motor takes a signed 16-bit speed as high and low byte: the sign is the direction. */
    rov_speed[ROV_LEFT] = rov_size((unsigned char)LeftHigh, (unsigned char)LeftLow);
    rov_backwards[ROV_LEFT] = (unsigned char)LeftHigh >> 7;
    rov_speed[ROV_RIGHT] = rov_size((unsigned char)RightHigh, (unsigned char)RightLow);
    rov_backwards[ROV_RIGHT] = (unsigned char)RightHigh >> 7;
    rov_motors();
/*Macro_SetMotors_End*/
}

void WriteLeds(char Bits)
{
/*Macro_WriteLeds_Start*/
    rov_leds = (unsigned char)Bits;
    ROV_LEDS = rov_leds;
/*Macro_WriteLeds_End*/
}

void LedOn(char Led)
{
/*Macro_LedOn_Start*/
    if ((unsigned char)Led < 8) {
        rov_leds |= rov_led_mask((unsigned char)Led);
        ROV_LEDS = rov_leds;
    }
/*Macro_LedOn_End*/
}

void LedOff(char Led)
{
/*Macro_LedOff_Start*/
    if ((unsigned char)Led < 8) {
        rov_leds &= (unsigned char)~rov_led_mask((unsigned char)Led);
        ROV_LEDS = rov_leds;
    }
/*Macro_LedOff_End*/
}

char ReadSwitch(char Side)
{
/*Macro_ReadSwitch_Start*/
    return (char)rov_switch((unsigned char)Side);
/*Macro_ReadSwitch_End*/
}

int WaitSwitch(char Side)
{
/*Macro_WaitSwitch_Start*/
    /* Never blocks: 0 once, at the first call that finds the switch released after a call
       that found it pressed; 1 otherwise. One latch serves both switches. */
    unsigned char waiting = 1;
    if (rov_switch((unsigned char)Side)) {
        if (!rov_switch_latch)
            rov_wait_ms(ROV_DEBOUNCE_MS);
        rov_switch_latch = 1;
    } else if (rov_switch_latch) {
        rov_wait_ms(ROV_DEBOUNCE_MS);
        rov_switch_latch = 0;
        waiting = 0;
    }
    return (int)waiting;
/*Macro_WaitSwitch_End*/
}

void PlayTone(char Frequency, char DurationHigh, char DurationLow)
{
/*Macro_PlayTone_Start*/
    /* Frequency in tens of hertz, duration in milliseconds; returns when the tone ends. */
    rov_tone_start((unsigned char)Frequency);
    rov_wait_ms(((unsigned int)(unsigned char)DurationHigh << 8) | (unsigned char)DurationLow);
    rov_tone_stop();
/*Macro_PlayTone_End*/
}

int ReadMic(void)
{
/*Macro_ReadMic_Start*/
    return (int)rov_analogue(ROV_AN_MIC);
/*Macro_ReadMic_End*/
}

int ReadLdr(void)
{
/*Macro_ReadLdr_Start*/
    return (int)rov_analogue(ROV_AN_LDR);
/*Macro_ReadLdr_End*/
}

char TestSideSensor(char Side)
{
/*Macro_TestSideSensor_Start*/
    /* 1 while the reading lies below the side's threshold. */
    unsigned char side = rov_side((unsigned char)Side);
    unsigned char where;
    if (side == 0)
        where = rov_against(ROV_AN_IR_LEFT, ROV_THRESH_LEFT);
    else if (side == 1)
        where = rov_against(ROV_AN_IR_FRONT, ROV_THRESH_FRONT);
    else
        where = rov_against(ROV_AN_IR_RIGHT, ROV_THRESH_RIGHT);
    return where == 1 ? 1 : 0;
/*Macro_TestSideSensor_End*/
}

int ReadSideSensor(char Side)
{
/*Macro_ReadSideSensor_Start*/
    return (int)rov_analogue(ROV_AN_IR_LEFT + rov_side((unsigned char)Side));
/*Macro_ReadSideSensor_End*/
}

char ReadLine(char Side)
{
/*Macro_ReadLine_Start*/
    unsigned char over = ROV_LINE_RIGHT;
    if (rov_side((unsigned char)Side) == 0)
        over = ROV_LINE_LEFT;
    return over;
/*Macro_ReadLine_End*/
}

void main(void)
{
/*InitialisationCode_Start*/
    /* Outputs low before they are driven: motors off, LEDs dark, piezo quiet. */
    PORTB = 0;
    PORTC = 0;
    PORTD = 0;
    TRISA = 0xFF;                   /* analogue sensors */
    TRISB = 0xDF;                   /* switches and line sensors in, RB5 piezo out */
    TRISC = 0xD8;                   /* RC0, RC1, RC2, RC5 out; I2C and serial pins in */
    TRISD = 0x00;                   /* LEDs */
    TRISE = 0x07;                   /* spare, digital inputs, parallel slave port off */

    ADCON1 = ROV_ADCON1;
    ADCON0 = ROV_ADCON0_BASE;

    /* PWM on CCP1/CCP2 from Timer 2: PR2 255 and 1:1 give 19.5 kHz, above hearing. */
    PR2 = 0xFF;
    CCPR1L = 0;
    CCPR2L = 0;
    CCP1CON = 0x0C;
    CCP2CON = 0x0C;
    T2CON = 0x04;

#if ROV_USE_I2C
    SSPADD = ROV_I2C_BRG;
    SSPSTAT = 0x80;                 /* slew-rate control off for 100 kHz */
    SSPCON = 0x28;                  /* I2C master */
#endif

    /* Timer 0: 1 ms tick. OPTION_REG: pull-ups off, prescaler 1:32 on Timer 0. */
    OPTION_REG = 0xC4;
    TMR0 = ROV_TMR0_RELOAD;
    T0IF = 0;
    T0IE = 1;

    /* Timer 1 sounds tones, prescaler 1:4; it runs only while a tone plays. */
    T1CON = 0x20;
    TMR1IF = 0;
    TMR1IE = 1;
    PEIE = 1;
    GIE = 1;

    rov_tick = 0;
    rov_leds = 0;
    rov_switch_latch = 0;
    rov_scale[ROV_LEFT] = rov_bias_scale(ROV_BIAS_LEFT);
    rov_scale[ROV_RIGHT] = rov_bias_scale(ROV_BIAS_RIGHT);
    rov_pair(0, 0);

#if ROV_WAIT_FOR_BUTTON
    rov_wait_for_start();
#endif
/*InitialisationCode_End*/
    for (;;) {
    }
}

void isr(void) __interrupt(0)
{
/*InterruptCode_Start*/
    if (T0IE && T0IF) {
        TMR0 += ROV_TMR0_RELOAD;    /* keeps the counts since the overflow */
        rov_tick++;
        T0IF = 0;
    }
    if (TMR1IE && TMR1IF) {
        /* The next half period counts from the overflow, not from here: the counts since it
           stay (as Timer 0's do), or every half period would be as long again as the time
           the interrupt took to get here. The timer stands still while it is added to. */
        TMR1ON = 0;
        TMR1L += rov_tone_lo;
        if (TMR1L < rov_tone_lo)
            TMR1H++;
        TMR1H += rov_tone_hi;
        TMR1ON = 1;
        ROV_PIEZO = !ROV_PIEZO;
        TMR1IF = 0;
    }
/*InterruptCode_End*/
}
