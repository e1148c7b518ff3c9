void main(){ if(((((
