/* Runs the robot's C on the host: the registers are variables, a thread plays the Timer 0
 * interrupt, and the analogue converter answers with readings the test chooses. Built by
 * check_code_file.py with the settings of one set passed in as EXP_* macros. */
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <time.h>

#include "pic16regs.h"

volatile unsigned char PORTA, PORTB, PORTC, PORTD, PORTE;
volatile unsigned char TRISA, TRISB, TRISC, TRISD, TRISE;
volatile unsigned char ADCON0, ADCON1, ADRESH, ADRESL;
volatile unsigned char PR2, T2CON, CCP1CON, CCP2CON, CCPR1L, CCPR2L;
volatile unsigned char OPTION_REG, TMR0, T1CON, TMR1H, TMR1L;
volatile unsigned char SSPADD, SSPSTAT, SSPCON;
volatile stub_PORTBbits_t PORTBbits;
volatile stub_PORTCbits_t PORTCbits;
volatile stub_ADCON0bits_t ADCON0bits;
volatile stub_INTCONbits_t INTCONbits;
volatile stub_PIR1bits_t PIR1bits;
volatile stub_PIE1bits_t PIE1bits;
volatile stub_T1CONbits_t T1CONbits;

static unsigned int adc[8];         /* 10-bit reading per channel */
static volatile unsigned char go;
static atomic_int ticks;
static atomic_int stop_ticking;

volatile unsigned char *stub_go_done(void)
{
    if (go) {
        unsigned int v = adc[(ADCON0 >> 3) & 7];
        ADRESH = (unsigned char)(v >> 8);
        ADRESL = (unsigned char)v;
        go = 0;
    }
    return &go;
}

/* The assembled program. */
void rovanta_init(void);
void rovanta_isr(void);
int ReadAnalogue(char);
void SetMotorTrim(char);
char TestLevel(char);
void DriveForwards(char);
void DriveBackwards(char);
void DriveStop(void);
void SpinLeft(char);
void SpinRight(char);
void SetMotors(char, char, char, char);
void WriteLeds(char);
void LedOn(char);
void LedOff(char);
char ReadSwitch(char);
int WaitSwitch(char);
void PlayTone(char, char, char);
int ReadMic(void);
int ReadLdr(void);
char TestSideSensor(char);
int ReadSideSensor(char);
char ReadLine(char);

static void *timer0(void *arg)
{
    struct timespec t = {0, 20000};
    (void)arg;
    while (!atomic_load(&stop_ticking)) {
        nanosleep(&t, NULL);
        T0IF = 1;
        rovanta_isr();
        atomic_fetch_add(&ticks, 1);
    }
    return NULL;
}

static int passed, failed;
#define CHECK_EQ(got, want)                                                                 \
    do {                                                                                   \
        long g_ = (long)(got), w_ = (long)(want);                                          \
        if (g_ == w_) {                                                                    \
            passed++;                                                                      \
        } else {                                                                           \
            failed++;                                                                      \
            printf("FAIL line %d: %s is %ld, expected %ld\n", __LINE__, #got, g_, w_);     \
        }                                                                                  \
    } while (0)

/* Duty of a motor at full speed with the given bias, as the code should trim it. */
static int trimmed(int speed, int percent)
{
    if (percent > 100)
        percent = 100;
    return speed * ((100 - percent) * 256 / 100) / 256;
}

static void set_adc(int channel, unsigned int tenbit) { adc[channel] = tenbit; }
static int scaled(unsigned int tenbit) { return EXP_RETURN_INT ? (int)tenbit : (int)(tenbit >> 2); }

int main(void)
{
    pthread_t thread;
    int left_bias = EXP_BIAS < 0 ? -EXP_BIAS : 0;
    int right_bias = EXP_BIAS > 0 ? EXP_BIAS : 0;

    rovanta_init();
    CHECK_EQ(TRISD, 0x00);
    CHECK_EQ(CCP1CON, 0x0C);
    CHECK_EQ(CCP2CON, 0x0C);
    CHECK_EQ(GIE, 1);
    CHECK_EQ(CCPR1L, 0);
    CHECK_EQ(CCPR2L, 0);
    pthread_create(&thread, NULL, timer0, NULL);

    /* Drive macros: sign to the direction pin, size to the duty, bias off one side. */
    DriveForwards((char)255);
    CHECK_EQ(CCPR1L, trimmed(255, left_bias));
    CHECK_EQ(CCPR2L, trimmed(255, right_bias));
    CHECK_EQ(RC0, 0);
    CHECK_EQ(RC5, 0);
    DriveBackwards(100);
    CHECK_EQ(RC0, 1);
    CHECK_EQ(RC5, 1);
    CHECK_EQ(CCPR1L, trimmed(100, left_bias));
    SpinLeft(50);
    CHECK_EQ(RC0, 1);
    CHECK_EQ(RC5, 0);
    SpinRight(50);
    CHECK_EQ(RC0, 0);
    CHECK_EQ(RC5, 1);
    DriveStop();
    CHECK_EQ(CCPR1L, 0);
    CHECK_EQ(CCPR2L, 0);

    /* SetMotors: signed byte pairs, limited to -255..255. */
    SetMotorTrim(0);
    SetMotors(0, (char)200, (char)255, 56);
    CHECK_EQ(CCPR1L, 200);
    CHECK_EQ(RC0, 0);
    CHECK_EQ(CCPR2L, 200);
    CHECK_EQ(RC5, 1);
    SetMotors(1, 0, (char)128, 0);      /* 256 and -32768 */
    CHECK_EQ(CCPR1L, 255);
    CHECK_EQ(RC0, 0);
    CHECK_EQ(CCPR2L, 255);
    CHECK_EQ(RC5, 1);
    SetMotors((char)255, (char)255, 0, 0);  /* -1 and 0 */
    CHECK_EQ(CCPR1L, 1);
    CHECK_EQ(RC0, 1);
    CHECK_EQ(CCPR2L, 0);

    /* A trim at run time applies to the running motors at once. */
    DriveForwards((char)200);
    SetMotorTrim((char)236);            /* -20: slow the left motor */
    CHECK_EQ(CCPR1L, trimmed(200, 20));
    CHECK_EQ(CCPR2L, 200);
    SetMotorTrim(20);
    CHECK_EQ(CCPR1L, 200);
    CHECK_EQ(CCPR2L, trimmed(200, 20));
    SetMotorTrim(0);
    CHECK_EQ(CCPR1L, 200);
    DriveStop();

    /* LEDs. */
    WriteLeds((char)165);
    CHECK_EQ(PORTD, 165);
    LedOn(1);
    CHECK_EQ(PORTD, 167);
    LedOff(7);
    CHECK_EQ(PORTD, 39);
    LedOn(8);
    LedOff((char)255);
    CHECK_EQ(PORTD, 39);

    /* Switches and line sensors, and the sides. */
    RB0 = 1;
    RB1 = 0;
    CHECK_EQ(ReadSwitch(0), 1);
    CHECK_EQ(ReadSwitch('L'), 1);
    CHECK_EQ(ReadSwitch('l'), 1);
    CHECK_EQ(ReadSwitch('F'), 0);
    CHECK_EQ(ReadSwitch(1), 0);
    RB2 = 0;
    RB3 = 1;
    CHECK_EQ(ReadLine('L'), 0);
    CHECK_EQ(ReadLine('R'), 1);
    CHECK_EQ(ReadLine(2), 1);

    /* WaitSwitch: up, down, down, up, up gives 1, 1, 1, 0, 1. */
    RB0 = 0;
    CHECK_EQ(WaitSwitch('L'), 1);
    RB0 = 1;
    CHECK_EQ(WaitSwitch('L'), 1);
    CHECK_EQ(WaitSwitch('L'), 1);
    RB0 = 0;
    CHECK_EQ(WaitSwitch('L'), 0);
    CHECK_EQ(WaitSwitch('L'), 1);

    /* Analogue readings on the chosen scale, on the right channels. */
    set_adc(0, 1000);
    set_adc(1, 512);
    set_adc(2, 400);
    set_adc(3, 4 * 200);
    set_adc(4, 3);
    CHECK_EQ(ReadLdr(), scaled(1000));
    CHECK_EQ(ReadMic(), scaled(512));
    CHECK_EQ(ReadSideSensor('L'), scaled(400));
    CHECK_EQ(ReadSideSensor('f'), scaled(800));
    CHECK_EQ(ReadSideSensor(9), scaled(3));
    CHECK_EQ(ReadAnalogue(4), scaled(3));
    CHECK_EQ(TestSideSensor(0), EXP_THRESH_L > scaled(400));
    CHECK_EQ(TestSideSensor(1), EXP_THRESH_F > scaled(800));
    CHECK_EQ(TestSideSensor('R'), EXP_THRESH_R > scaled(3));
    set_adc(3, EXP_RETURN_INT ? EXP_THRESH_F : 4 * EXP_THRESH_F);  /* equal: not below */
    if (EXP_THRESH_F >= 0 && EXP_THRESH_F <= (EXP_RETURN_INT ? 1023 : 255))
        CHECK_EQ(TestSideSensor('F'), 0);
    CHECK_EQ(TestLevel(0), scaled(1000) > EXP_THRESH_LDR);
    CHECK_EQ(TestLevel(1), scaled(512) > EXP_THRESH_MIC);

    /* PlayTone: Timer 1 reload for 440 Hz (a half period less the 5 counts the timer stands
       still at each reload), returns after the duration, leaves the piezo quiet. */
    {
        int before = atomic_load(&ticks);
        PlayTone(44, 0, 100);
        CHECK_EQ(TMR1H * 256 + TMR1L, 65536 - (62500 / 44 - 5));
        CHECK_EQ(atomic_load(&ticks) - before >= 100, 1);
        CHECK_EQ(TMR1ON, 0);
        CHECK_EQ(RB5, 0);
    }

    atomic_store(&stop_ticking, 1);
    pthread_join(thread, NULL);
    printf("%d passed, %d failed\n", passed, failed);
    return failed ? 1 : 0;
}
